#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "shell/ConsoleUi.h"

namespace {

using rm::ConsoleUi;
using rm::DlgType;

// Queued answers go to the questions in order; an information box with its one button neither
// takes one nor leaves a question without its answer.
TEST(ConsoleUi, AnswersGoToQuestionsOnlyInOrder) {
  std::FILE* err = std::tmpfile();
  ASSERT_NE(err, nullptr);
  ConsoleUi ui(err, nullptr);
  ui.QueueAnswer("No");
  ui.QueueAnswer("Discard");
  const std::vector<std::string> ok = {"OK"}, yesNo = {"Yes", "No"}, three = {"No Action", "Discard", "Cancel"};
  EXPECT_EQ(ui.MessageDlg(" User Dot Matrix Size has been defined ! ", "Info", DlgType::Information, ok), "OK");
  EXPECT_EQ(ui.MessageDlg("Clear?", "Confirm", DlgType::Confirmation, yesNo), "No");
  EXPECT_EQ(ui.MessageDlg("Done", "Info", DlgType::Information, ok), "OK");
  EXPECT_EQ(ui.MessageDlg("Selection?", "Confirm", DlgType::Confirmation, three), "Discard");
  // With the answers used up, the safe button.
  EXPECT_EQ(ui.MessageDlg("Again?", "Confirm", DlgType::Confirmation, three), "Cancel");
  std::fclose(err);
}

}  // namespace
