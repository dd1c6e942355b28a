#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <unistd.h>

#include "shell/IniFile.h"
#include "support/TestSupport.h"

namespace {

namespace fs = std::filesystem;
using rm::IniFile;

IniFile FromText(const std::string& text) {
  IniFile ini;
  ini.SetText(text);
  return ini;
}

constexpr const char* kMissing = "<missing>";

TEST(IniFile, ReadStringRules) {
  struct Case {
    const char* file;
    const char* section;
    const char* key;
    const char* expected;  // kMissing: the default comes back
  };
  const Case cases[] = {
      {"[S]\nA=1\n", "S", "A", "1"},
      {"[S]\nA=1\n", "s", "a", "1"},  // names ignore case
      {"[b50]\nC10=x\n", "B50", "c10", "x"},
      {"  [ S2 ]  \n  key  =  two words  \n", "S2", "key", "two words"},  // trimmed, inner blanks kept
      {"[S]\nA=\n", "S", "A", ""},                                        // present but empty is not the default
      {"[S]\nA=a=b\n", "S", "A", "a=b"},                                  // the first "=" splits
      {"[S]\nA=\" x \"\n", "S", "A", " x "},                              // quotes keep the blanks
      {"[S]\nA='q'\n", "S", "A", "q"},
      {"[S]\nA=\"\n", "S", "A", "\""},  // one quote is not a pair
      {"[S]\nA=\"x'\n", "S", "A", "\"x'"},
      {"[S]\nA=1\n", "T", "A", kMissing},
      {"[S]\nA=1\n", "S", "B", kMissing},
      {"A=1\n[S]\n", "S", "A", kMissing},                 // above the first header: no section
      {"[S]\nA=1\n[S]\nA=2\nB=3\n", "S", "A", "1"},       // first section wins ...
      {"[S]\nA=1\n[S]\nA=2\nB=3\n", "S", "B", kMissing},  // ... and later ones are not looked at
      {"[S]\nA=1\na=2\n", "S", "A", "1"},                 // first key wins
      {"[S]\nA=1\n[T\nB=2\n", "S", "B", "2"},             // no closing bracket: not a section
      {"[S]\nA=1\n[T\nB=2\n", "T", "B", kMissing},
      {"[S]\n[T=5\n", "S", "[T", kMissing},  // nor a key
      {"[S] trailing words\nA=1\n", "S", "A", "1"},
      {"[S]\n;A=1\n", "S", ";A", kMissing},       // comments are not keys
      {"[S]\n =1\n", "S", "", kMissing},          // a key needs a name
      {"[S]\r\nA=1\r\nB=2", "S", "B", "2"},       // CR LF, no final line end
      {"[S]\rA=1\rB=2\r", "S", "B", "2"},         // CR alone
      {"\xEF\xBB\xBF[S]\nA=1\n", "S", "A", "1"},  // a byte order mark is not part of the name
      {"[]\nA=1\n", "", "A", "1"},
  };
  for (const Case& c : cases) {
    IniFile ini = FromText(c.file);
    std::string got = ini.ReadString(c.section, c.key, kMissing);
    EXPECT_EQ(got, c.expected) << "file: " << c.file << " [" << c.section << "] " << c.key;
    EXPECT_EQ(ini.HasKey(c.section, c.key), std::string(c.expected) != kMissing) << c.file;
  }
}

TEST(IniFile, ReadIntegerAndBoolRules) {
  struct Case {
    const char* value;
    int integer;  // -99 is the default passed in
    int boolean;  // 0, 1, or -1 for "the default" (tried with both defaults)
  };
  const Case cases[] = {
      {"0", 0, 0},
      {"1", 1, 1},
      {"-1", -1, 1},
      {"+5", 5, 1},
      {" 7 ", 7, 1},
      {"12abc", 12, 1},
      {"7.9", 7, 1},
      {"007", 7, 1},
      {"000", 0, 0},
      {"0x1F", 31, 1},
      {"0X1f", 31, 1},
      {"-0x10", -16, 1},
      {"0x", 0, 0},
      {"0xZ", 0, 0},
      {"\"42\"", 42, 1},
      {"2147483647", 2147483647, 1},
      {"-2147483648", -2147483647 - 1, 1},
      {"2147483648", -99, 1},  // too large for an int: default; still a non-zero number
      {"-2147483649", -99, 1},
      {"99999999999999999999999", -99, 1},
      {"0x80000000", -99, 1},
      {"00000000000000000000000", 0, 0},
      {"", -99, -1},
      {"abc", -99, -1},
      {"true", -99, -1},
      {"-", -99, -1},
      {"- 5", -99, -1},
      {"$1F", -99, -1},
  };
  for (const Case& c : cases) {
    IniFile ini = FromText(std::string("[I]\nv=") + c.value + "\n");
    EXPECT_EQ(ini.ReadInteger("I", "v", -99), c.integer) << "value: '" << c.value << "'";
    for (bool def : {false, true}) {
      bool expected = c.boolean < 0 ? def : c.boolean == 1;
      EXPECT_EQ(ini.ReadBool("I", "v", def), expected) << "value: '" << c.value << "' default " << def;
    }
  }
  IniFile empty;
  EXPECT_EQ(empty.ReadInteger("I", "v", 128), 128);
  EXPECT_TRUE(empty.ReadBool("I", "v", true));
  EXPECT_FALSE(empty.ReadBool("I", "v", false));
}

TEST(IniFile, WritesUpdateInPlace) {
  struct Case {
    const char* name;
    const char* before;
    const char* section;
    const char* key;
    const char* value;
    const char* after;
  };
  const Case cases[] = {
      {"existing key keeps its line and spelling", "; head\n[S]\nA = 1\nB=2\n", "s", "a", "9",
       "; head\n[S]\nA=9\nB=2\n"},
      {"new key after the last key of its section", "[S]\nA=1\n; about T\n\n[T]\nX=1\n", "S", "B", "2",
       "[S]\nA=1\nB=2\n; about T\n\n[T]\nX=1\n"},
      {"new key in a section without keys", "[S]\n; note\n[T]\n", "S", "A", "1", "[S]\nA=1\n; note\n[T]\n"},
      {"new section at the end after a blank line", "[S]\nA=1", "T", "B", "2", "[S]\nA=1\n\n[T]\nB=2\n"},
      {"no second blank line", "[S]\nA=1\n\n", "T", "B", "2", "[S]\nA=1\n\n[T]\nB=2\n"},
      {"empty file", "", "T", "B", "2", "[T]\nB=2\n"},
      {"a file of only comments", "; c\n", "T", "B", "2", "; c\n\n[T]\nB=2\n"},
      {"first of duplicate sections is written", "[S]\nA=1\n[s]\nA=2\n", "S", "A", "3", "[S]\nA=3\n[s]\nA=2\n"},
      {"first of duplicate keys is written", "[S]\nA=1\nA=2\n", "S", "A", "3", "[S]\nA=3\nA=2\n"},
      {"new key goes after duplicates too", "[S]\nA=1\nA=2\nodd line\n", "S", "B", "3",
       "[S]\nA=1\nA=2\nB=3\nodd line\n"},
      {"odd lines and CR LF kept, written with LF", "[S]\r\nno equals\r\n[broken\r\nA=1\r\n", "S", "A", "2",
       "[S]\nno equals\n[broken\nA=2\n"},
      {"blanks at the ends are quoted", "[S]\nA=1\n", "S", "A", "#include ", "[S]\nA=\"#include \"\n"},
      {"quoted value is quoted again", "[S]\n", "S", "A", "\"x\"", "[S]\nA=\"\"x\"\"\n"},
      {"line breaks become blanks", "[S]\n", "S", "A", "a\r\nb", "[S]\nA=a  b\n"},
      {"byte order mark kept", "\xEF\xBB\xBF[S]\nA=1\n", "S", "A", "2", "\xEF\xBB\xBF[S]\nA=2\n"},
  };
  for (const Case& c : cases) {
    IniFile ini = FromText(c.before);
    ASSERT_TRUE(ini.WriteString(c.section, c.key, c.value)) << c.name;
    EXPECT_EQ(ini.Text(), c.after) << c.name;
    std::string expected = c.value;
    for (char& ch : expected)
      if (ch == '\r' || ch == '\n') ch = ' ';
    EXPECT_EQ(ini.ReadString(c.section, c.key, kMissing), expected) << c.name;
    EXPECT_TRUE(ini.Modified()) << c.name;
  }
}

TEST(IniFile, TypedWritesAndUnchangedText) {
  const std::string text = "; keep me\n[B2]\nGWI=128\r\n\nx y z\n[S]\nDPR=Printer\n";
  IniFile ini = FromText(text);
  EXPECT_EQ(ini.Text(), "; keep me\n[B2]\nGWI=128\n\nx y z\n[S]\nDPR=Printer\n");
  ASSERT_TRUE(ini.WriteString("B2", "GWI", "128"));
  EXPECT_FALSE(ini.Modified());  // same value, same line
  ASSERT_TRUE(ini.WriteInteger("B2", "GHI", -64));
  ASSERT_TRUE(ini.WriteBool("B2", "MSBF", true));
  ASSERT_TRUE(ini.WriteBool("B2", "NOMAT", false));
  EXPECT_EQ(ini.Text(), "; keep me\n[B2]\nGWI=128\nGHI=-64\nMSBF=1\nNOMAT=0\n\nx y z\n[S]\nDPR=Printer\n");
  EXPECT_EQ(ini.ReadInteger("b2", "ghi", 0), -64);
}

TEST(IniFile, RefusesNamesThatCannotReadBack) {
  const std::pair<const char*, const char*> bad[] = {
      {"S", ""},   {"S", "a=b"},  {"S", "[a"}, {"S", ";a"}, {"S", " a"},
      {"S", "a "}, {"S", "a\nb"}, {"S]", "a"}, {" S", "a"}, {"S\r", "a"},
  };
  for (const auto& [section, key] : bad) {
    IniFile ini = FromText("[S]\nA=1\n");
    EXPECT_FALSE(ini.WriteString(section, key, "v")) << "[" << section << "] " << key;
    EXPECT_EQ(ini.Text(), "[S]\nA=1\n");
    EXPECT_FALSE(ini.Modified());
  }
}

TEST(IniFile, ListsSectionsAndKeysInFileOrderOnce) {
  IniFile ini = FromText("top=1\n[B2]\nGWI=1\n;c=2\nGHI=2\ngwi=3\n[S]\nX=1\n[b2]\nZZ=1\n[T\n[]\nE=1\n");
  EXPECT_EQ(ini.Sections(), (std::vector<std::string>{"B2", "S", ""}));
  EXPECT_EQ(ini.Keys("b2"), (std::vector<std::string>{"GWI", "GHI"}));
  EXPECT_EQ(ini.Keys("S"), (std::vector<std::string>{"X"}));
  EXPECT_TRUE(ini.Keys("none").empty());
  EXPECT_TRUE(ini.HasSection("s"));
  EXPECT_FALSE(ini.HasSection("T"));
}

TEST(IniFile, ManyKeysRoundTripThroughTheDisk) {
  const rmtest::TempDir tmp;
  const std::string& dir = tmp.path;
  const std::string path = dir + "/project.LCD";
  const std::string values[] = {"",  " ",   "plain", "two  words", "\"",        "\"quoted\"", "'x'",      "=", "a=b",
                                ";", "[x]", "\t t",  "trail ",     "#include ", "0x",         "\xC3\xA9", "-1"};
  IniFile out;
  ASSERT_TRUE(out.Load(path));  // does not exist yet
  EXPECT_TRUE(out.Sections().empty());
  for (int s = 0; s < 40; ++s)
    for (int k = 0; k < 50; ++k) {
      std::string section = (s % 2 ? "S" : "b") + std::to_string(s);
      std::string key = "k" + std::to_string(k);
      if (k % 3 == 0)
        ASSERT_TRUE(out.WriteInteger(section, key, (k - 25) * 1000003));
      else if (k % 3 == 1)
        ASSERT_TRUE(out.WriteBool(section, key, (s + k) % 2 == 0));
      else
        ASSERT_TRUE(out.WriteString(section, key, values[(s + k) % std::size(values)]));
    }
  std::string error;
  ASSERT_TRUE(out.Save(&error)) << error;

  IniFile in;
  ASSERT_TRUE(in.Load(path, &error)) << error;
  ASSERT_EQ(in.Sections().size(), 40u);
  for (int s = 0; s < 40; ++s) {
    std::string section = (s % 2 ? "s" : "B") + std::to_string(s);  // other case on purpose
    ASSERT_EQ(in.Keys(section).size(), 50u);
    EXPECT_EQ(in.Keys(section).front(), "k0");
    for (int k = 0; k < 50; ++k) {
      std::string key = "K" + std::to_string(k);
      if (k % 3 == 0)
        EXPECT_EQ(in.ReadInteger(section, key, -7), (k - 25) * 1000003) << section << key;
      else if (k % 3 == 1)
        EXPECT_EQ(in.ReadBool(section, key, (s + k) % 2 != 0), (s + k) % 2 == 0) << section << key;
      else
        EXPECT_EQ(in.ReadString(section, key, kMissing), values[(s + k) % std::size(values)]) << section << key;
    }
  }
  EXPECT_EQ(in.Text(), out.Text());
}

TEST(IniFile, GarbageNeverBreaksReading) {
  std::string binary;
  for (int i = 0; i < 4096; ++i) binary += static_cast<char>((i * 7919) & 0xFF);
  const std::string huge(8 << 20, 'x');
  struct Case {
    std::string name;
    std::string text;
  };
  const Case cases[] = {
      {"binary", binary},
      {"binary around a good section", binary + "\n[S]\nA=1\n" + binary},
      {"a huge line without equals", huge + "\n[S]\nA=1\n"},
      {"a huge section name", "[" + huge + "]\nA=1\n[S]\nA=1\n"},
      {"a huge unclosed bracket", "[S]\nA=1\n[" + huge + "\n"},
      {"only brackets", "[[[[]]]]\n]]][[[\n[\n]\n=\n==\n"},
      {"NUL bytes", std::string("\0[S\0]\nA\0=1\n", 11) + "[S]\nA=1\n"},
  };
  for (const Case& c : cases) {
    IniFile ini = FromText(c.text);
    // Whatever happened above, a good section after it reads, an unknown key reads its default.
    EXPECT_EQ(ini.ReadString("nope", "A", kMissing), kMissing) << c.name;
    EXPECT_EQ(ini.ReadInteger("S", "missing", 5), 5) << c.name;
    if (c.text.find("[S]\nA=1") != std::string::npos) {
      EXPECT_EQ(ini.ReadInteger("S", "A", 0), 1) << c.name;
    }
    // Writing back keeps every byte except line ends.
    IniFile again = FromText(ini.Text());
    EXPECT_EQ(again.Text(), ini.Text()) << c.name;
    ASSERT_TRUE(ini.WriteString("S", "B", "2")) << c.name;
    EXPECT_EQ(ini.ReadString("S", "B", kMissing), "2") << c.name;
  }
  IniFile value = FromText("[S]\nA=" + huge + "\n");
  EXPECT_EQ(value.ReadString("S", "A", "").size(), huge.size());
  EXPECT_EQ(value.ReadInteger("S", "A", -3), -3);
}

TEST(IniFile, LoadAndSaveFailures) {
  const rmtest::TempDir tmp;
  const std::string& dir = tmp.path;
  std::string error;

  // A folder that does not exist: loads as empty, cannot be saved.
  IniFile nowhere;
  ASSERT_TRUE(nowhere.Load(dir + "/no/such/folder/p.LCD"));
  nowhere.WriteInteger("I", "v", 1);
  EXPECT_FALSE(nowhere.Save(&error));
  EXPECT_NE(error.find(dir + "/no/such/folder/p.LCD"), std::string::npos) << error;
  EXPECT_FALSE(fs::exists(dir + "/no"));

  // A target that is a directory: reading fails, and a save over it fails and leaves it.
  fs::create_directory(dir + "/d.LCD");
  IniFile folder;
  error.clear();
  EXPECT_FALSE(folder.Load(dir + "/d.LCD", &error));
  EXPECT_NE(error.find("d.LCD"), std::string::npos) << error;
  EXPECT_FALSE(folder.Save(&error));  // no path after a failed load
  folder.SetPath(dir + "/d.LCD");
  folder.WriteInteger("I", "v", 1);
  error.clear();
  EXPECT_FALSE(folder.Save(&error));
  EXPECT_FALSE(error.empty());
  EXPECT_TRUE(fs::is_directory(dir + "/d.LCD"));

  // A write that fails midway leaves the old file whole. Here the temporary name beside the
  // file is taken by a folder, so the temporary file cannot be made.
  const std::string path = dir + "/p.LCD";
  rmtest::WriteText(path, "[S]\nA=old\n");
  fs::create_directory(path + ".tmp" + std::to_string(::getpid()));
  IniFile ini;
  ASSERT_TRUE(ini.Load(path));
  ini.WriteString("S", "A", "new");
  EXPECT_FALSE(ini.Save(&error));
  EXPECT_EQ(rmtest::ReadFile(path), "[S]\nA=old\n");
  fs::remove(path + ".tmp" + std::to_string(::getpid()));
  ASSERT_TRUE(ini.Save(&error)) << error;
  EXPECT_EQ(rmtest::ReadFile(path), "[S]\nA=new\n");

  // Nothing but the files of the test is left in the folder.
  std::vector<std::string> names;
  for (const auto& e : fs::directory_iterator(dir)) names.push_back(e.path().filename().string());
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"d.LCD", "p.LCD"}));
}

}  // namespace
