#include "platform/files.h"
#include "tests/conservation/step.h"
#include "views/files/set_aside.h"

namespace conservation {

namespace {

using Kind = Entry::Kind;

class Judgement {
 public:
    Judgement(const Step& step, const State& after);

    std::vector<std::wstring> Complaints();

 private:
    void Complain(const std::wstring& path, const wchar_t* what) {
        complaints_.push_back(what + (L": " + path));
    }
    // The place on the disk that the program means by a path.
    std::wstring PlaceOf(std::wstring path) const;
    // Where an entry of the source may have come to. One that lies above its destination may come
    // along several times.
    std::vector<std::wstring> Arrivals(const std::wstring& place) const;
    bool MayBeOverwritten(const std::wstring& place) const;
    const Entry* After(const std::wstring& place) const;
    bool CameFromSource(const std::wstring& place, const Entry& entry) const;
    bool WasSetAside(const std::wstring& place, unsigned id) const;
    bool LeadsNowhere(const std::wstring& link) const;
    bool IsExcusedCut(const std::wstring& place) const;

    void JudgeNewFile(const std::wstring& place, const Entry& entry);
    void JudgeNewFolder(const std::wstring& place, const Entry& entry);
    void JudgeOldFile(const std::wstring& place, const Entry& entry);
    void JudgeOldFolder(const std::wstring& place, const Entry& entry);

    const Step& step_;
    const State& after_;
    std::wstring source_;
    std::wstring destination_;
    std::set<std::wstring> confirmed_;
    std::set<std::wstring> outOfReach_;
    std::wstring halfDone_;
    std::map<unsigned, int> countBefore_;
    std::map<unsigned, int> countAfter_;
    std::vector<std::wstring> complaints_;
};

Judgement::Judgement(const Step& step, const State& after)
    : step_(step),
      after_(after),
      source_(Key(step.source)),
      destination_(Key(step.destination)),
      halfDone_(PlaceOf(step.outcome.halfDone)) {
    for (const std::wstring& path : step.confirmed) {
        confirmed_.insert(PlaceOf(path));
    }
    for (const std::wstring& path : step.outcome.outOfReach) {
        outOfReach_.insert(PlaceOf(path));
    }
    for (const auto& [place, entry] : step.before) {
        ++countBefore_[entry.id];
    }
    for (const auto& [place, entry] : after) {
        ++countAfter_[entry.id];
    }
}

std::wstring Judgement::PlaceOf(std::wstring path) const {
    if (path.empty()) {
        return path;
    }
    if (path.starts_with(L"\\\\?\\")) {
        path.erase(0, 4);
    }
    std::wstring place = Key(platform::CanonicalPath(path));
    for (int links = 0; links < 4; ++links) {
        for (const auto& [link, target] : step_.links) {
            const auto there = step_.before.find(link);
            if (!target.empty() && LiesIn(place, link) && place != link &&
                there != step_.before.end() && there->second.kind == Kind::Link) {
                place = Key(target) + place.substr(link.size());
                break;
            }
        }
    }
    return place;
}

std::vector<std::wstring> Judgement::Arrivals(const std::wstring& place) const {
    constexpr size_t mostTimes = 8;
    std::vector<std::wstring> arrivals;
    std::wstring at = place;
    while (step_.kind != Step::Kind::Delete && LiesIn(at, source_) && arrivals.size() < mostTimes) {
        at = destination_ + at.substr(source_.size());
        arrivals.push_back(at);
    }
    return arrivals;
}

bool Judgement::MayBeOverwritten(const std::wstring& place) const {
    return confirmed_.contains(place) || (step_.allConfirmed && LiesIn(place, destination_));
}

const Entry* Judgement::After(const std::wstring& place) const {
    const auto found = after_.find(place);
    return found == after_.end() ? nullptr : &found->second;
}

bool Judgement::CameFromSource(const std::wstring& place, const Entry& entry) const {
    for (const auto& [old, was] : step_.before) {
        if (was.kind != entry.kind || was.id != entry.id || !LiesIn(old, source_)) {
            continue;
        }
        for (const std::wstring& arrival : Arrivals(old)) {
            if (arrival == place) {
                return true;
            }
        }
    }
    return false;
}

bool Judgement::WasSetAside(const std::wstring& place, unsigned id) const {
    const size_t end = place.rfind(Key(views::setAsideSuffix));
    if (end == std::wstring::npos) {
        return false;
    }
    const std::wstring old = place.substr(0, end);
    const auto was = step_.before.find(old);
    const auto appeared = step_.appeared.find(old);
    return MayBeOverwritten(old) && ((was != step_.before.end() && was->second.id == id) ||
                                     (appeared != step_.appeared.end() && appeared->second == id) ||
                                     countBefore_.contains(id));
}

// A beginning may be left where nothing could be done about it, while the original is whole.
bool Judgement::IsExcusedCut(const std::wstring& place) const {
    if (place != halfDone_) {
        return false;
    }
    const bool excused = step_.outcome.ended || outOfReach_.contains(place);
    for (const auto& [old, was] : step_.before) {
        for (const std::wstring& arrival : Arrivals(old)) {
            const auto now = countAfter_.find(was.id);
            if (arrival == place && was.id != 0 && now != countAfter_.end() &&
                (excused || outOfReach_.contains(old))) {
                return true;
            }
        }
    }
    return false;
}

void Judgement::JudgeNewFile(const std::wstring& place, const Entry& entry) {
    const auto was = step_.before.find(place);
    if (was != step_.before.end() && was->second.kind == Kind::File && was->second.id == entry.id) {
        return;
    }
    if (entry.id == 0) {
        if (!IsExcusedCut(place)) {
            Complain(place, L"is cut");
        }
        return;
    }
    const auto appeared = step_.appeared.find(place);
    if (CameFromSource(place, entry) ||
        (appeared != step_.appeared.end() && appeared->second == entry.id)) {
        return;
    }
    if (!WasSetAside(place, entry.id)) {
        Complain(place, L"has come from nowhere");
    } else if (!step_.outcome.ended && step_.outcome.failures == 0 && !step_.meddled) {
        Complain(place, L"is left although nothing failed");
    }
}

void Judgement::JudgeNewFolder(const std::wstring& place, const Entry& entry) {
    const auto was = step_.before.find(place);
    if (was != step_.before.end() && was->second.kind == entry.kind) {
        return;
    }
    // A link that could not be completed may leave a folder.
    Entry link = entry;
    link.kind = Kind::Link;
    const bool troubled = step_.outcome.ended || step_.outcome.failures > 0;
    if (!CameFromSource(place, entry) && !(troubled && CameFromSource(place, link))) {
        Complain(place, L"is a folder from nowhere");
    }
}

void Judgement::JudgeOldFile(const std::wstring& place, const Entry& entry) {
    const Entry* const there = After(place);
    const bool inSource = LiesIn(place, source_);
    const int now = countAfter_[entry.id];
    bool arrived = false;
    bool outOfReach = outOfReach_.contains(place);
    for (const std::wstring& arrival : Arrivals(place)) {
        const Entry* const come = After(arrival);
        arrived = arrived || (inSource && come && come->id == entry.id);
        outOfReach = outOfReach || outOfReach_.contains(arrival);
    }
    if (inSource && step_.kind != Step::Kind::Copy && !step_.outcome.ended && !outOfReach &&
        now > countBefore_[entry.id]) {
        Complain(place, L"was moved and is there twice");
    }
    if ((there && there->id == entry.id) || step_.vanished.contains(entry.id) ||
        (step_.kind == Step::Kind::Delete && inSource) ||
        (step_.kind == Step::Kind::Move && arrived)) {
        return;
    }
    if (!MayBeOverwritten(place)) {
        Complain(place, L"is lost");
    } else if (now == 0 && !inSource && !(there && there->id != 0)) {
        Complain(place, L"was given up for nothing");
    }
}

// One that leads nowhere is not seen any more.
bool Judgement::LeadsNowhere(const std::wstring& link) const {
    const auto known = step_.links.find(link);
    if (known == step_.links.end()) {
        return true;
    }
    const Entry* const target = After(Key(known->second));
    return !target || target->kind != Kind::Folder;
}

void Judgement::JudgeOldFolder(const std::wstring& place, const Entry& entry) {
    const Entry* const there = After(place);
    if ((there && there->kind == entry.kind) ||
        (step_.kind == Step::Kind::Delete && LiesIn(place, source_)) || !step_.vanished.empty()) {
        return;
    }
    if (step_.kind == Step::Kind::Move) {
        for (const std::wstring& arrival : Arrivals(place)) {
            const Entry* const come = After(arrival);
            if (come && come->kind == entry.kind) {
                return;
            }
        }
    }
    if (entry.kind == Kind::Link && LeadsNowhere(place)) {
        return;
    }
    Complain(place,
             entry.kind == Kind::Link ? L"is a link that is lost" : L"is a folder that is lost");
}

std::vector<std::wstring> Judgement::Complaints() {
    for (const auto& [place, entry] : after_) {
        if (entry.kind == Kind::File) {
            JudgeNewFile(place, entry);
        } else {
            JudgeNewFolder(place, entry);
        }
    }
    for (const auto& [place, entry] : step_.before) {
        if (entry.kind == Kind::File) {
            JudgeOldFile(place, entry);
        } else {
            JudgeOldFolder(place, entry);
        }
    }
    for (const auto& [place, id] : step_.appeared) {
        if (countAfter_[id] == 0 && !MayBeOverwritten(place)) {
            Complain(place, L"came meanwhile and is lost");
        }
    }
    return std::move(complaints_);
}

}  // namespace

std::vector<std::wstring> Judge(const Step& step, const State& after) {
    return Judgement(step, after).Complaints();
}

}  // namespace conservation
