// Feeds arbitrary bytes to the project file reader and checks what must hold for any file:
// nothing crashes, writing the file back and reading it again changes no read, a value written
// under a key reads back, and a write touches no other key.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "shell/IniFile.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

struct Snapshot {
  std::vector<std::string> sections;
  std::vector<std::vector<std::string>> keys;
  std::vector<std::string> values;  // every key of every section, in order
};

Snapshot Take(const rm::IniFile& ini) {
  Snapshot s;
  s.sections = ini.Sections();
  for (const std::string& section : s.sections) {
    s.keys.push_back(ini.Keys(section));
    for (const std::string& key : s.keys.back()) {
      Check(ini.HasKey(section, key));
      s.values.push_back(ini.ReadString(section, key, ""));
      // Only that these terminate without a sanitizer report matters here.
      (void)ini.ReadInteger(section, key, 0);
      (void)ini.ReadBool(section, key, false);
    }
  }
  return s;
}

bool Same(const Snapshot& a, const Snapshot& b) {
  return a.sections == b.sections && a.keys == b.keys && a.values == b.values;
}

std::string OneLine(std::string v) {
  for (char& c : v)
    if (c == '\r' || c == '\n') c = ' ';
  return v;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  rm::IniFile ini;
  ini.SetText(input);
  const Snapshot before = Take(ini);

  // Writing back is a fixed point after one pass and keeps every read.
  const std::string text = ini.Text();
  rm::IniFile reread;
  reread.SetText(text);
  Check(reread.Text() == text);
  Check(Same(before, Take(reread)));

  // Rewrite the first key found with a value cut from the input; nothing else may change.
  const std::string value = OneLine(input.substr(input.size() / 2, 64));
  if (!before.sections.empty() && !before.keys.front().empty()) {
    const std::string& section = before.sections.front();
    const std::string& key = before.keys.front().front();
    Check(ini.WriteString(section, key, value));
    Snapshot after = Take(ini);
    Check(after.values.front() == value);
    after.values.front() = before.values.front();
    Check(Same(before, after));
  }

  // A new key named from the input either is refused and changes nothing, or reads back.
  const std::string name = input.substr(0, std::min<std::size_t>(input.size(), 12));
  const std::string textBefore = ini.Text();
  if (ini.WriteString(name, name, value)) {
    Check(ini.ReadString(name, name, "") == value);
    rm::IniFile saved;
    saved.SetText(ini.Text());
    Check(saved.ReadString(name, name, "") == value);
    Check(Same(Take(saved), Take(ini)));
  } else {
    Check(ini.Text() == textBefore);
  }
  return 0;
}
