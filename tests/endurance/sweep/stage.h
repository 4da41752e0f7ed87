// What a person does at the program, step by step, and what is seen meanwhile.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/endurance/sweep/subject.h"
#include "tests/support/finger.h"
#include "tests/support/sample_program.h"

namespace sweep {

// A box that was asked or told, with what it says.
struct Box {
    std::string caption;
    std::vector<std::string> texts;
    // One of the system's own, which says what it says in other ways.
    bool systems = false;
    // One of the program's that asks or tells; a page else.
    bool message = false;
};

class Stage {
 public:
    explicit Stage(Subject& subject) : subject_(subject) {}

    Subject& Program() { return subject_; }

    // The steps.
    void Command(WORD command) { subject_.Command(command); }
    void Select(int row);
    void KeyOnList(WPARAM key) { subject_.Key(subject_.List(), key); }
    void KeyOnPopup(WPARAM key);
    void SoftKey(int index);
    void Type(const std::wstring& text);
    void EndTyping(WPARAM key);
    // Copies or cuts a row, from an empty clipboard.
    void PutOnClipboard(WORD command, int row);
    // Answers the box on top, unless it tells an error; what it asks is noted.
    bool Answer(WORD button);
    void Play(test::Finger finger);
    POINT RowPoint(int row) const;
    void StartSample(const wchar_t* manner, const std::wstring& keptFile = L"");
    void EndSample();

    // Writes down what is to be the same with and without failures.
    void Note(const std::string& text) { notes_.push_back(text); }
    void NoteTitle() { Note("title " + Narrow(subject_.Title())); }
    void NotePage();
    void NoteClipboard();

    // What a dialog or box says.
    Box Read(HWND dialog);
    // Closes popups, editors, boxes and pages; what was told is returned.
    std::vector<Box> CloseEverything();

    const std::vector<std::string>& Notes() const { return notes_; }
    const std::vector<Box>& Questions() const { return questions_; }
    void Begin();

 private:
    Subject& subject_;
    std::unique_ptr<test::SampleProgram> sample_;
    std::vector<std::string> notes_;
    std::vector<Box> questions_;
};

std::string Joined(const std::vector<std::string>& texts);

}  // namespace sweep
