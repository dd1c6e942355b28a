#include <gtest/gtest.h>

#include "shell/ProjectStore.h"
#include "shell/SettingsTable.h"
#include "support/ShellTestSupport.h"

namespace {

using rmtest::TestProgram;

std::vector<std::string> AllValues(const rm::Application& app) {
  std::vector<std::string> v;
  for (const auto& def : rm::SettingsTable()) v.push_back(std::string(def.key) + "=" + def.get(app));
  return v;
}

TEST(ProjectStore, EveryKeyComesBackAsWritten) {
  TestProgram a;
  // A project far from the factory settings.
  const std::pair<const char*, const char*> changes[] = {
      {"FXHB", "+D+"}, {"VALpref", "#"},   {"ORGC", "7"},    {"COMAS", "1"}, {"sepst", " ;"},
      {"EolSem", "1"}, {"PSCOM", "1"},     {"Noh", "1"},     {"LineN", "1"},  {"CPRE", "  .db "},
      {"td", "1"},     {"MSBF", "0"},      {"D16bc", "1"},   {"snib", "1"},   {"EODS", "; // end"},
      {"WSIZE", "1"},  {"BCD", "1"},       {"usco", "__"},   {"INCSYN", "#import "}, {"DELAY", "1"},
  };
  std::string error;
  for (const auto& [key, value] : changes) ASSERT_TRUE(rm::ApplySetting(a.app, key, value, error)) << error;
  rm::IniFile file;
  rm::ProjectWrite(a.app, file);

  TestProgram b;
  rm::IniFile reread;
  reread.SetText(file.Text());
  rm::ProjectRead(b.app, reread);
  EXPECT_EQ(AllValues(b.app), AllValues(a.app));
  EXPECT_NE(AllValues(b.app), AllValues(TestProgram().app));  // the changes did take
}

TEST(ProjectStore, MissingAndUnreadableValuesTakeTheFactoryDefault) {
  TestProgram changed;
  std::string error;
  ASSERT_TRUE(rm::ApplySetting(changed.app, "ORGC", "4", error));
  ASSERT_TRUE(rm::ApplySetting(changed.app, "Noh", "1", error));
  rm::IniFile file;
  file.SetText("[I11]\nORGC=many\n[B1]\nNoh=yes\n");
  rm::ProjectRead(changed.app, file);
  EXPECT_EQ(AllValues(changed.app), AllValues(TestProgram().app));
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

}  // namespace
