#include <gtest/gtest.h>

#include "engine/ColourModes.h"
#include "shell/ProjectStore.h"
#include "shell/SettingsTable.h"
#include "support/ShellTestSupport.h"

namespace {

using rmtest::TestProgram;

std::vector<std::string> AllValues(const rm::Application& app) {
  std::vector<std::string> v;
  for (const auto& def : rm::SettingsTable())
    v.push_back(std::string(def.section) + "/" + std::string(def.key) + "=" + rm::GetSetting(app, def));
  return v;
}

std::string Name(const rm::SettingDef& d) { return std::string(d.section) + "/" + std::string(d.key); }

TEST(ProjectStore, MissingAndUnreadableValuesTakeTheFactoryDefault) {
  TestProgram changed;
  std::string error;
  ASSERT_TRUE(rm::ApplySetting(changed.app, "ORGC", "4", error));
  ASSERT_TRUE(rm::ApplySetting(changed.app, "Noh", "1", error));
  rm::IniFile file;
  file.SetText("[I11]\nORGC=many\n[B1]\nNoh=yes\n[B2]\nGWI=2000\n[S]\nFXHB=hex\nCPRE=0123456789abcdefXYZ\n");
  rm::ProjectRead(changed.app, file);
  // The factory state: a fresh program that read a project with nothing in it.
  TestProgram factory;
  rm::ProjectRead(factory.app, rm::IniFile());
  EXPECT_EQ(changed.app.session.Syntax.LinePrefix, "0123456789abcde") << "a text is cut to its field";
  changed.app.session.Syntax.LinePrefix = factory.app.session.Syntax.LinePrefix;
  EXPECT_EQ(AllValues(changed.app), AllValues(factory.app));
}

TEST(ProjectStore, AFreshProgramHoldsTheFactoryDefaults) {
  // What a new program starts with is what a factory restore (an empty project) gives. Not
  // compared: PM follows the colour mode, and a program that has read no project has a 128 x 128
  // canvas where the factory project has 128 x 64 (GHI).
  const TestProgram fresh;
  for (const auto& d : rm::SettingsTable()) {
    if (d.read && !d.computed && d.Readable() && d.key != "PM" && d.key != "GHI") {
      EXPECT_EQ(rm::GetSetting(fresh.app, d), d.defaultValue) << Name(d);
    }
  }
}

TEST(ProjectStore, KeysTheProgramDoesNotKnowAreKept) {
  TestProgram p;
  rm::IniFile file;
  file.SetText("; my notes\n[S]\nFXHB=H\nFutureKey=keep me\n[Elsewhere]\na=1\n");
  rm::ProjectRead(p.app, file);
  EXPECT_EQ(p.app.session.Syntax.DataFormatKind, "H");
  rm::ProjectWrite(p.app, file);
  const std::string text = file.Text();
  EXPECT_EQ(text.rfind("; my notes\n[S]\nFXHB=H\nFutureKey=keep me\n", 0), 0u) << text;
  EXPECT_NE(text.find("[Elsewhere]\na=1\n"), std::string::npos);
  EXPECT_NE(text.find("ORGC=16"), std::string::npos);
}

// Writes `app`'s settings into a fresh file and reads them into a fresh program.
struct RoundTrip {
  rm::IniFile file;
  TestProgram back;
  explicit RoundTrip(const rm::Application& app) {
    rm::ProjectWrite(app, file);
    rm::IniFile reread;
    reread.SetText(file.Text());
    rm::ProjectRead(back.app, reread);
    rm::LoadSearchReplaceData(back.app, reread);
  }
  std::string Get(const char* key) const { return rm::GetSetting(back.app, *rm::FindSetting(key)); }
};

// The program's state until the next save, as the settings panel sets it.
void Set(rm::Application& app, const char* key, const char* value) {
  std::string error;
  ASSERT_TRUE(rm::ApplySetting(app, key, value, error, rm::SettingUse::Session)) << error;
}

TEST(ProjectStore, WhatTheWriterAndTheReaderDisagreeOn) {
  TestProgram a;
  Set(a.app, "rs48", "1");     // never written: off again at the next start
  Set(a.app, "vew1", "1234");  // written as wew1: the reader takes its default
  Set(a.app, "vecin", "LCD.Begin");
  Set(a.app, "EndstF", "}F;");
  RoundTrip r(a.app);
  const std::string text = r.file.Text();
  EXPECT_EQ(r.Get("rs48"), "0");
  EXPECT_EQ(text.find("rs48"), std::string::npos);
  EXPECT_EQ(r.Get("vew1"), "900");
  EXPECT_NE(text.find("wew1=1234\n"), std::string::npos);
  EXPECT_EQ(r.Get("vecin"), "GCLD.Init");
  EXPECT_NE(text.find("vecini=LCD.Begin\n"), std::string::npos);
  // Endst is written twice, the font's string last; so the graphic end string comes back as it.
  EXPECT_EQ(r.back.app.session.Syntax.EndOfData, "}F;");
  EXPECT_EQ(r.Get("EndstF"), "};");
  // Written for the record only.
  EXPECT_NE(text.find("\nHpixels=64\nWpixels=128\n"), std::string::npos) << "the canvas size";
}

TEST(ProjectStore, TheFourPlacesOfOneKeyShareTheLastValue) {
  TestProgram a;
  const auto& table = rm::SettingsTable();
  std::vector<const rm::SettingDef*> places;
  for (const auto& d : table)
    if (d.key == "formp7") places.push_back(&d);
  ASSERT_EQ(places.size(), 4u);
  const char* values[] = {"10", "20", "30", "40"};  // adjustments top, left, main top, main left
  for (int i = 0; i < 4; ++i) rm::SetSetting(a.app, *places[i], values[i]);
  RoundTrip r(a.app);
  for (const auto* p : places) EXPECT_EQ(rm::GetSetting(r.back.app, *p), "40");
}

TEST(ProjectStore, SectionsComeInTheWritersOrder) {
  TestProgram a;
  a.app.globals.SearchReplaceSections = {{"b50", {{"C10", "1"}, {"C10s", "0"}}}, {"S0", {{"s11", "foo"}}}};
  RoundTrip r(a.app);
  std::vector<std::string> sections = r.file.Sections();
  const std::vector<std::string> expected = {"S",   "B17", "B13", "B7",  "B3",  "B2",  "b50", "B10", "B11", "SX",
                                             "I11", "S2",  "I2",  "S3",  "I1",  "B1",  "S4",  "S5",  "I5",  "S6",
                                             "S7",  "S8",  "I8",  "S12", "S13", "I13", "B9",  "S14", "S15", "S16",
                                             "I16", "CB",  "FS0", "S0",  "S18", "S19", "b18", "I18"};
  EXPECT_EQ(sections, expected);
  // The grid's sections are left to the editors window, which keeps them for the next write.
  EXPECT_EQ(r.back.app.globals.SearchReplaceSections, a.app.globals.SearchReplaceSections);
}

TEST(ProjectStore, ALowerCaseSectionIsTheSameSection) {
  TestProgram p;
  rm::IniFile file;
  file.SetText("[b2]\nmsbf=0\n[s]\nfxhb=H\n[B18]\nachb=0\n");
  rm::ProjectRead(p.app, file);
  EXPECT_FALSE(p.app.session.BigEndian);
  EXPECT_EQ(p.app.session.Syntax.DataFormatKind, "H");
  EXPECT_EQ(rm::GetSetting(p.app, *rm::FindSetting("achb")), "0");
}

TEST(ProjectStore, EveryColourModeComesBack) {
  for (const auto& mode : rm::kColourModes) {
    TestProgram a;
    ASSERT_TRUE(a.app.mainForm.SetColourMode(mode.modeNumber, true));
    RoundTrip r(a.app);
    EXPECT_EQ(r.back.app.session.ModeNumber, mode.modeNumber) << mode.command;
    EXPECT_EQ(r.back.app.session.Packed, a.app.session.Packed) << mode.command;
  }
}

TEST(ProjectStore, ADefaultBuiltByTheProgramKeepsTheValueInForce) {
  // The output folder's default is the folder the program set up; a project without the key
  // leaves it alone, while a key with a factory default goes back to it.
  TestProgram p;
  p.app.session.OutputFolder = "/work/out";
  p.app.session.Syntax.DataPerLine = 3;
  rm::IniFile empty;
  rm::ProjectRead(p.app, empty);
  EXPECT_EQ(p.app.session.OutputFolder, "/work/out");
  EXPECT_EQ(p.app.session.Syntax.DataPerLine, 16);
}

TEST(ProjectStore, EveryBoundVariableHasItsKey) {
  // A binding whose section or key is misspelt would leave its variable unsaved, held instead.
  for (const char* k : {"FXHB",   "ORGC",      "MSBF", "OFP",   "Neg", "Monc",  "PFP",   "usco", "tfp1",   "bfpa",
                        "FontFP", "lcdUncomp", "Ecli", "WSIZE", "BSD", "D16bc", "CORN3", "tda",  "fpar14", "cprx"})
    EXPECT_TRUE(rm::FindSetting(k)->Readable()) << k;
  EXPECT_EQ(rm::FindSetting("B10/HCO")->type, rm::SettingType::Integer);
  EXPECT_EQ(rm::FindSetting("HCO")->type, rm::SettingType::Boolean);  // [B2] comes first when read
}

// A value the key takes that differs from `now`.
std::string OtherValue(const rm::SettingDef& d, const std::string& now) {
  switch (d.type) {
    case rm::SettingType::Boolean: return now == "1" ? "0" : "1";
    case rm::SettingType::Integer: {
      const long long n = std::stoll(now);
      return std::to_string(n < d.max ? n + 1 : n - 1);
    }
    case rm::SettingType::String: break;
  }
  if (!d.words.empty()) return std::string(d.words[d.words.front() == now ? 1 : 0]);
  std::string v = "v " + std::string(d.key);
  if (d.maxLength > 0 && v.size() > d.maxLength) v.resize(d.maxLength);
  if (v == now) v[0] = 'w';
  return v;
}

TEST(ProjectStore, EveryKeySetIsKeptThroughWriteReadAndListOrRefusedWithAReason) {
  std::vector<std::string> refused;
  std::size_t kept = 0;
  for (const auto& d : rm::SettingsTable()) {
    if (!d.read || rm::FindSetting(Name(d)) != &d) continue;
    TestProgram a;
    const std::string now = rm::GetSetting(a.app, d);
    // The choice in force of a radio group cannot be turned off (see the refusals below).
    if (!d.radioGroup.empty() && now == "1") continue;
    const std::string value = OtherValue(d, now);
    std::string error;
    if (!rm::StoreSetting(a.app, Name(d), value, error)) {
      EXPECT_NE(error.find(std::string(d.key) + " "), std::string::npos) << error;
      refused.push_back(Name(d));
      continue;
    }
    EXPECT_EQ(rm::GetSetting(a.app, d), value) << Name(d);
    RoundTrip r(a.app);
    EXPECT_EQ(rm::GetSetting(r.back.app, d), value) << Name(d);
    const auto list = rm::ListSettings(r.back.app);
    const std::string line = "[" + std::string(d.section) + "] " + std::string(d.key) + "=" + value;
    EXPECT_NE(std::find(list.begin(), list.end(), line), list.end()) << line;
    ++kept;
  }
  EXPECT_GT(kept, 600u);
  // The colour mode's switches (set by the mode), and the keys whose value would not come back.
  const std::vector<std::string> expected = {
      "B13/rs48", "S13/vew1", "B1/ST7",    "S4/Moni", "S4/Monc",  "S4/C256",   "S4/G256",  "S4/C256NP", "S4/C16",
      "S4/C8",    "S4/C4096", "S4/C65535", "S4/C18",  "S4/C18u",  "S4/G16",    "S4/G4",    "S4/G42",    "S4/G32",
      "S4/RGRA",  "S4/GRL32", "S4/C16M",   "S4/PM",   "S8/Endst", "S8/EndstF", "S14/vecin"};
  EXPECT_EQ(refused, expected);
}

TEST(ProjectStore, AValueAKeyDoesNotTakeIsRefusedWithTheReason) {
  const struct {
    const char* key;
    std::string value;
    rm::SettingUse use;
    const char* error;  // empty: taken
  } cases[] = {
      {"C256", "0", rm::SettingUse::Store, "C256 is the colour mode: use --mode c256"},
      {"Hpixels", "10", rm::SettingUse::Store, "Hpixels records the canvas height and is never read: set GHI"},
      {"SWRG", "1", rm::SettingUse::Run, "SWRG has no effect on a run; it is only kept in the project file"},
      {"SWRG", "1", rm::SettingUse::Store, ""},
      {"FXHB", "hex", rm::SettingUse::Run, "FXHB takes one of X, H, B, 0B, +H+, +B+, +D+, not \"hex\""},
      {"FXHB", "+D+", rm::SettingUse::Run, ""},
      {"GWI", "0", rm::SettingUse::Run, "GWI takes 1 to 1024, not 0"},
      {"GWI", "1024", rm::SettingUse::Run, ""},
      {"GHI", "769", rm::SettingUse::Run, "GHI takes 1 to 768, not 769"},
      {"ORGC", "many", rm::SettingUse::Run, "ORGC takes a whole number, not \"many\""},
      {"MSBF", "2", rm::SettingUse::Run, "MSBF takes 0 or 1, not \"2\""},
      {"CPRE", std::string(16, '.'), rm::SettingUse::Run, "CPRE takes at most 15 characters"},
      {"CPRE", std::string(15, '.'), rm::SettingUse::Run, ""},
      {"CCOM", "0", rm::SettingUse::Run, "CCOM is the choice in force of the comment form: set the choice wanted to 1"},
      {"STCOM", "0", rm::SettingUse::Run, ""},
      {"rs48", "1", rm::SettingUse::Store, "rs48 is read but never saved"},
      {"rs48", "1", rm::SettingUse::Session, ""},
      {"EndstF", "}F;", rm::SettingUse::Store, "EndstF is saved as Endst, which is not read back"},
      {"Endst", "};;", rm::SettingUse::Store, "Endst is saved over by EndstF"},
      {"nokey", "1", rm::SettingUse::Run, "unknown setting key: nokey"},
  };
  for (const auto& c : cases) {
    TestProgram p;
    std::string error;
    const bool taken = rm::ApplySetting(p.app, c.key, c.value, error, c.use);
    EXPECT_EQ(taken, *c.error == 0) << c.key << "=" << c.value << ": " << error;
    if (*c.error) {
      EXPECT_EQ(error.rfind(c.error, 0), 0u) << error;
    }
  }
}

TEST(ProjectStore, AModeChosenByNameSetsItsNegativeOutputWhateverTheProjectSaid) {
  TestProgram a;
  ASSERT_TRUE(a.app.mainForm.SetColourMode(2, true));
  EXPECT_TRUE(a.app.session.NegativeOutput);
  RoundTrip r(a.app);
  EXPECT_EQ(r.back.app.session.ModeNumber, 2);
  EXPECT_TRUE(r.back.app.session.NegativeOutput);
  ASSERT_TRUE(r.back.app.mainForm.SetColourMode(1, true));
  EXPECT_FALSE(r.back.app.session.NegativeOutput);
  // Neg set by name in monochrome is the inverted mode; outside monochrome it is refused.
  std::string error;
  ASSERT_TRUE(rm::ApplySetting(r.back.app, "Neg", "1", error)) << error;
  EXPECT_EQ(r.back.app.session.ModeNumber, 2);
  ASSERT_TRUE(r.back.app.mainForm.SetColourMode(55, true));
  EXPECT_FALSE(rm::ApplySetting(r.back.app, "Neg", "1", error));
  EXPECT_EQ(error, "Neg inverts monochrome output only: use --mode mono-inv");
}

TEST(ProjectStore, DiffNamesTheKeysThatDifferFromTheFactory) {
  TestProgram p, factory;
  rm::ProjectRead(p.app, rm::IniFile());
  rm::ProjectRead(factory.app, rm::IniFile());
  EXPECT_EQ(rm::DiffSettings(p.app, factory.app), std::vector<std::string>());
  Set(p.app, "ORGC", "4");
  Set(p.app, "td", "1");
  ASSERT_TRUE(p.app.mainForm.SetColourMode(55, true));
  const std::vector<std::string> expected = {"[B3] tr=0 (factory: 1)", "[B3] td=1 (factory: 0)",
                                             "[I11] ORGC=4 (factory: 16)", "[S4] Monc=0 (factory: 1)",
                                             "[S4] C16=1 (factory: 0)"};
  EXPECT_EQ(rm::DiffSettings(p.app, factory.app), expected);
}

}  // namespace
