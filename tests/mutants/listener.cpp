
// Goes to the end of the tests' main source: says which test comes by which changes.
namespace mutants {
void BeginTest(const char* hits);
void EndTest(unsigned milliseconds);
}  // namespace mutants

namespace {

struct MutantListener : testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo& test) override {
        char folder[1024] = "";
        if (GetEnvironmentVariableA("VANTOR_MUTANT_FOLDER", folder, sizeof(folder)) == 0) {
            return;
        }
        std::string name = std::string(test.test_suite_name()) + "." + test.name();
        for (char& letter : name) {
            letter = letter == '/' ? '~' : letter;
        }
        mutants::BeginTest((std::string(folder) + "\\" + name).c_str());
        noting_ = true;
    }

    void OnTestEnd(const testing::TestInfo& test) override {
        if (noting_) {
            mutants::EndTest(static_cast<unsigned>(test.result()->elapsed_time()));
        }
    }

 private:
    bool noting_ = false;
};

const bool listening =
    (testing::UnitTest::GetInstance()->listeners().Append(new MutantListener), true);

}  // namespace
