#include "res/resource.h"
#include "tests/views/operations_fixture.h"

using namespace test;

namespace {

// Two names that the locale's order finds equal and that a folder may hold both.
const std::wstring sharp =
    L"Stra\x00DF"
    L"e.txt";
const std::wstring twoLetters = L"Strasse.txt";

class EqualNames : public OperationsFixture {
 protected:
    void SetUp() override {
        OperationsFixture::SetUp();
        ASSERT_EQ(CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, sharp.c_str(), -1,
                                 twoLetters.c_str(), -1),
                  CSTR_EQUAL);
        folder.MakeFile(sharp, "sharp");
        folder.MakeFile(twoLetters, "two");
        View().Refresh();
        ASSERT_EQ(Rows().size(), 2u);
    }
    void Delete(const std::wstring& name) {
        Select(name);
        Give(ID_DELETE, [&] {
            Answer(L"Are you sure you want to permanently delete this file?\r\n" + folder.Path() +
                       L"\\" + name,
                   "Return");
        });
    }
};

}  // namespace

TEST_F(EqualNames, LoseTheRowOfTheOneThatIsDeleted) {
    Delete(twoLetters);
    EXPECT_TRUE(Exists(sharp));
    EXPECT_EQ(Rows(), (Names{sharp}));
}

TEST_F(EqualNames, LoseTheRowOfTheOtherThatIsDeleted) {
    Delete(sharp);
    EXPECT_TRUE(Exists(twoLetters));
    EXPECT_EQ(Rows(), (Names{twoLetters}));
}

TEST_F(EqualNames, BothHaveARowWhenOneIsPasted) {
    folder.MakeFolder(L"to");
    folder.MakeFile(L"to\\" + sharp, "there");
    GoTo(L"to");
    PutPaths({folder.Path() + L"\\" + twoLetters});
    Give(ID_PASTE);
    EXPECT_EQ(Rows().size(), 2u);
    EXPECT_EQ(Selected(), twoLetters);
    EXPECT_EQ(Content(L"to\\" + sharp), "there");
    EXPECT_EQ(Content(L"to\\" + twoLetters), "two");
}

TEST_F(EqualNames, AreSelectedAsTheyAreSpelled) {
    for (const std::wstring& name : {sharp, twoLetters}) {
        View().Navigate((folder.Path() + L"\\" + name).c_str());
        EXPECT_EQ(Selected(), name);
    }
}
