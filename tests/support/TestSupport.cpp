#include "support/TestSupport.h"

#include <utility>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace rmtest {

std::string ScriptedUi::MessageDlg(const std::string& text, const std::string& title, rm::DlgType type,
                                   const std::vector<std::string>& buttons) {
  std::string answer;
  if (!answers.empty()) {
    answer = answers.front();
    answers.pop_front();
  } else if (!buttons.empty()) {
    answer = buttons.front();
  }
  messages.push_back({text, title, type, buttons, answer, std::exchange(nextExplanation, {})});
  return answer;
}

bool ScriptedUi::EscapePressed() {
  ++polls;
  return escapeAfterPolls >= 0 && polls > escapeAfterPolls;
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

std::string CompareGolden(const std::string& name, const std::string& actual) {
  std::filesystem::path path = std::filesystem::path(RM_GOLDEN_DIR) / name;
  if (const char* u = std::getenv("UPDATE_GOLDEN"); u && std::string(u) == "1") {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << actual;
    return {};
  }
  if (!std::filesystem::exists(path)) return "golden file missing: " + path.string();
  std::string expected = ReadFile(path.string());
  if (expected == actual) return {};
  std::size_t line = 1, i = 0;
  for (; i < expected.size() && i < actual.size() && expected[i] == actual[i]; ++i)
    if (expected[i] == '\n') ++line;
  auto lineAt = [](const std::string& s, std::size_t pos) {
    std::size_t b = s.rfind('\n', pos == 0 ? 0 : pos - 1);
    b = (b == std::string::npos) ? 0 : b + 1;
    std::size_t e = s.find('\n', pos);
    return s.substr(b, e == std::string::npos ? std::string::npos : e - b);
  };
  return name + " differs at line " + std::to_string(line) + "\n expected: [" + lineAt(expected, i) +
         "]\n   actual: [" + lineAt(actual, i) + "]";
}

std::string MakeTempDir() {
  std::string tmpl = (std::filesystem::temp_directory_path() / "rmtestXXXXXX").string();
  char* p = mkdtemp(tmpl.data());
  return p ? std::string(p) : std::string();
}

TempDir::~TempDir() {
  std::error_code ec;
  std::filesystem::permissions(path, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, ec);
  std::filesystem::remove_all(path, ec);
}

std::vector<std::string> ShownMessages(const ScriptedUi& ui) {
  std::vector<std::string> said;
  for (const auto& m : ui.messages) said.push_back(m.title + ": " + m.text);
  return said;
}

void WriteText(const std::string& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

}  // namespace rmtest
