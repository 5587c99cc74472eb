#include "proband/r_importlist.h"

#include <gtest/gtest.h>

#include <string>

#include "core/r_date.h"
#include "tests/proband/proband_support.h"
#include "tests/support/test_files.h"

namespace {

// One line an entry: the four texts, then sex and date of birth.
std::string listing(const R_ImportList& list, const R_File* F) {
  std::string result = std::string("info=") + list.getInfo() + "\n";
  for (int i = 0; i < list.getCount(); i++) {
    for (int typ = 0; typ < R_ImportProband::_textCount; typ++) result += std::string(list.getText(i, typ)) + "|";
    int sex = -1;
    R_Date dob;
    list.getSummary(F, i, &sex, &dob);
    char date[32];
    dob.format(date, "%D.%M.%Y");
    result += std::to_string(sex) + "|" + date + "\n";
  }
  return result;
}

class ImportListTest : public ::testing::Test {
 protected:
  void SetUp() override { file = loadKnowledge("knowledge.xml"); }

  bool loadText(const std::string& text, int mode = 0) {
    writeFile(dir.file("list.xml"), text);
    return list.load(file.get(), dir.file("list.xml").c_str(), &reporter, mode);
  }

  std::unique_ptr<R_File> file;
  R_ImportList list;
  CollectingReporter reporter;
  TempDir dir;
};

}  // namespace

TEST_F(ImportListTest, DamagedEntriesVanishAndTextsDoNotLeakIntoTheNextEntry) {
  ASSERT_TRUE(list.load(file.get(), testData("proband/import_list.xml").c_str(), &reporter, 0));
  EXPECT_TRUE(reporter.lines().empty());
  EXPECT_EQ(
      "info=Export from the clinic\n"
      "Nov\xE1kov\xE1 Eva|Praha 4|first comment|short stature|1|03.04.2010\n"
      "Svoboda Jan|||tall stature|0|15.06.2012\n",
      listing(list, file.get()));
  R_Proband proband(file.get());
  ASSERT_TRUE(list.getProband(proband, 0));
  // 1734 days from 3.4.2010 to 1.1.2015 / 365.25 = 4.7474
  EXPECT_EQ("<proband><info id=\"A-1\" dob=\"3.4.2010\" sex=\"female\" /><data><val var=\"FATHER_HT\">180</val>"
            "<record date=\"1.1.2015\" age=\"4.747\" comment=\"check\"><val var=\"HEIGHT\">110.5</val></record></data></proband>",
            textOf(proband));
}

TEST_F(ImportListTest, InfoAfterTheEntriesOtherModesMissingFilesAndProbandsWithoutSex) {
  ASSERT_TRUE(loadText(
      "<import_list><import_proband><name>A</name><proband><info sex=\"male\" dob=\"1.2.2003\"/></proband>"
      "</import_proband><import_info> late </import_info><import_info></import_info></import_list>"));
  EXPECT_EQ("info=late\nA||||0|01.02.2003\n", listing(list, file.get()));
  R_Date dob;
  list.getSummary(file.get(), 0, nullptr, &dob);
  EXPECT_FALSE(dob.isDefined());
  EXPECT_FALSE(list.isSelected(0));
  list.setSelected(0, true);
  EXPECT_TRUE(list.isSelected(0));
  // A file of another mode is refused and the list read before stays.
  ASSERT_TRUE(loadText("<import_list><import_info>kept</import_info></import_list>"));
  EXPECT_FALSE(loadText("<import_list><import_info>other</import_info></import_list>", 1));
  EXPECT_STREQ("kept", list.getInfo());
  EXPECT_FALSE(list.load(file.get(), dir.file("missing.xml").c_str(), nullptr, 0));
  EXPECT_EQ(0, list.getCount());
  EXPECT_STREQ("", list.getInfo());
  R_Proband sexless(file.get());
  EXPECT_FALSE(list.add(sexless, "n", "d", "a", "c"));
  EXPECT_EQ(0, list.getCount());
  EXPECT_FALSE(loadText("<import_list><import_proband><name>A</name><proband><info sex=\"male\"/></proband>"));
  EXPECT_EQ(1, list.getCount());  // entries read before the fault stay
}
