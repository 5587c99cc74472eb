// Texts: r_ascii.h, R_String, R_StringList, R_TextBuffer, and the checksum R_A_CRC16 over bytes; and the pointer
// arrays R_FieldTemplate and R_SortedFieldTemplate.
#include "core/r_string.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/r_a_crc16.h"
#include "core/r_ascii.h"
#include "core/r_fieldtemplate.h"
#include "core/r_sortedfieldtemplate.h"
#include "core/r_stringlist.h"
#include "core/r_textbuffer.h"
#include "tests/support/stored_bytes.h"

namespace {

// An element ordered by key; a negative key is unknown and compares false both ways, as a visit without age and date
// does. Counts the live items to tell deleting from handing back.
struct Item {
  Item(int k, int s = 0) : key(k), serial(s) { ++alive; }
  ~Item() { --alive; }
  bool operator<(const Item& other) const { return key >= 0 && other.key >= 0 && key < other.key; }
  int key, serial;
  static int alive;
};
int Item::alive = 0;

typedef R_SortedFieldTemplate<Item> Items;

// "key.serial " of each element.
std::string contents(const Items& items) {
  std::string text;
  for (int i = 0; i < items.getCount(); ++i)
    text += std::to_string(items.get(i)->key) + "." + std::to_string(items.get(i)->serial) + " ";
  return text;
}

}  // namespace

TEST(AsciiTest, StricmpFoldsAsciiLettersOnlyAndSortsHighBytesBehindThem) {
  const struct { const char* a; const char* b; int expected; } pairs[] = {
      {"abc", "ABC", 0}, {"a", "B", -1},       {"Zebra", "apple", 1},  {"", "a", -1},        {"ab", "a", 1},
      {"\xC8", "z", 1},  {"\xC8", "\xE8", -1}, {"\xC8" "a", "\xC8" "A", 0}, {"a\x80", "a\x7F", 1},
  };
  for (const auto& row : pairs) {
    int result = R_stricmp(row.a, row.b);
    EXPECT_EQ(row.expected, (result > 0) - (result < 0)) << row.a << " / " << row.b;
  }
}

TEST(StringTest, SetAndSetNormalizedTurnEmptyInputIntoTheNullFormWhichReadsAsAnEmptyText) {
  const struct { bool normalize; const char* source; bool result_if_empty, result; const char* text; } rows[] = {
      {false, "", false, false, ""},        {false, nullptr, true, true, ""},   {false, "a  b", false, true, "a  b"},
      {true, "  a   b \n", false, true, "a b"}, {true, " \n \t", true, true, ""}, {true, " \n \t", false, false, ""},
      {true, "\xC8 \r\n x\xA0", false, true, "\xC8 x\xA0"}, {true, "a\x01\x1F" "b\x20\x1F", false, true, "a b"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.source ? row.source : "null");
    R_String s("old");
    EXPECT_EQ(row.result, row.normalize ? s.setNormalized(row.source, row.result_if_empty)
                                        : s.set(row.source, row.result_if_empty));
    EXPECT_STREQ(row.text, s.get());
    EXPECT_EQ(static_cast<int>(strlen(row.text)), s.getLength());
  }
  EXPECT_TRUE(R_String(static_cast<const char*>(nullptr)) == R_String(""));
  EXPECT_FALSE(R_String("ab") == R_String("abc") || R_String("ab") == R_String("AB"));
}

TEST(StringTest, CopiesOwnTheirBytesAndSetCharStaysInsideTheText) {
  R_String a("abc"), b(a), c;
  c = a;
  a.setChar(0, 'x');
  EXPECT_EQ("xbc abc abc", std::string(a.get()) + " " + b.get() + " " + c.get());
  c = c.get() + 1;  // from its own text
  EXPECT_STREQ("bc", c.get());
  R_String s("ab"), empty;
  EXPECT_TRUE(s.charAt(1) == 'b' && s.charAt(2) == 0 && s.charAt(1000) == 0);
  for (int i : {-1, 2, 1}) s.setChar(i, 'y');
  EXPECT_EQ(std::string("ay\0", 3), std::string(s.get(), 3));  // the length stays 2
  empty.setChar(0, 'x');
  EXPECT_TRUE(empty.isEmpty());
}

TEST(StringTest, ContainsMatchesInOneForwardPassIgnoringAsciiCaseAndCaseChangesTouchAsciiOnly) {
  const struct { const char* text; const char* pattern; bool found; } rows[] = {
      {"aab", "ab", false},   {"xab", "ab", true},  {"Zebra", "ZEB", true},   {"zebra", "zEb", true},
      {"abc", "", true},      {"abc", "abcd", false}, {"\xC8" "esko", "\xE8", false},
      {"\xC8" "esko", "\xC8" "ESK", true},          {"", "", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.found, R_String(row.text).contains(row.pattern)) << row.text << " / " << row.pattern;
  }
  R_String s("AbZ@[`{\xC8\xE8\x8A\x9Az");
  s.toLower();
  EXPECT_STREQ("abz@[`{\xC8\xE8\x8A\x9Az", s.get());
  s.toUpper();
  EXPECT_STREQ("ABZ@[`{\xC8\xE8\x8A\x9AZ", s.get());
}

TEST(StringTest, StoredFormIsTypeByteLengthWordAndBytesAndAZeroByteEndsIt) {
  expectStoredForm(R_String("ab"), "01 02 00 61 62");
  expectStoredForm(R_String(), "01 00 00");
  expectEveryCutFails<R_String>("01 03 00 61 62 63", [](const R_String& s) { return s.isEmpty(); });
  Bytes bytes = savedBytes(R_String(std::string(70000, 'q').c_str()));
  ASSERT_EQ(3u + 65535u, bytes.size()) << "save cuts a text beyond the longest stored length";
  EXPECT_EQ("01 FF FF", hexOf(Bytes(bytes.begin(), bytes.begin() + 3)));
  R_String s("old");
  EXPECT_TRUE(loadFrom(bytesOf("01 03 00 61 00 62"), &s) && s.getLength() == 1 && s.get()[0] == 'a');
  EXPECT_FALSE(loadFrom(bytesOf("02 01 00 61"), &s) || !s.isEmpty()) << "a wrong type byte";
  s = "old";
  int next = 0;
  EXPECT_FALSE(loadFrom(bytesOf("01 01 00 61"), &s, &next, false));
  EXPECT_TRUE(s.isEmpty() && next == 0x01) << "a load after a failure must not read";
}

TEST(StringListTest, SplitsAtControlBytesAndBlanksWithoutEmptyWords) {
  const struct { const char* text; std::vector<std::string> words; } rows[] = {
      {"  alpha\tbeta  ", {"alpha", "beta"}}, {"   \t\n", {}}, {"a\x01" "b\x1F" "c d", {"a", "b", "c", "d"}},
      {"\xC8" "esk\xE1 \xA0rep\x7F", {"\xC8" "esk\xE1", "\xA0rep\x7F"}},
  };
  for (const auto& row : rows) {
    R_StringList list(row.text);
    std::vector<std::string> words;
    for (int i = 0; i < list.getCount(); ++i) words.push_back(list[i]);
    EXPECT_EQ(row.words, words) << row.text;
  }
}

// Bytes put one by one and in runs of every length, across many growths, come out in order, NUL and bytes above 127
// too; clear keeps the room.
TEST(TextBufferTest, KeepsEveryByteInOrderAcrossGrowthAndClearKeepsTheRoom) {
  R_TextBuffer buffer;
  std::string expected;
  for (int length = 0; length < 700; ++length) {
    std::string run(static_cast<size_t>(length), static_cast<char>('a' + length % 26));
    buffer.put(run.data(), run.size());
    buffer.put(static_cast<char>(length % 256));
    expected += run + static_cast<char>(length % 256);
  }
  EXPECT_EQ(expected, std::string(buffer.data(), buffer.size()));
  ASSERT_TRUE(buffer.reserve(1 << 20));
  const char* room = buffer.data();
  buffer.clear();
  buffer.put("second");
  EXPECT_TRUE(std::string(buffer.data(), buffer.size()) == "second" && buffer.data() == room);
}

// The checksum shifts in each byte and tests bit 10 without a mask, so the two lowest bits of a byte never count:
// "`ab" sums as "abc".
TEST(CRC16Test, ChecksumsOfKnownBytes) {
  const struct { std::string bytes; int expected; } rows[] = {
      {"", 0},         {"abc", 0x1B7EEE}, {"abcde", 0x70EF2307}, {"\xFF\xFF", 0x3F3F},
      {std::string("\x00\x00\x00\x00\x00\x80", 6), 0x20}, {"\x10", 4}, {"\x01\x02\x03", 0}, {"`ab", 0x1B7EEE},
  };
  for (const auto& row : rows) {
    R_A_CRC16 crc;
    crc.update(reinterpret_cast<const unsigned char*>(row.bytes.data()), static_cast<int>(row.bytes.size()));
    EXPECT_EQ(row.expected, crc.get()) << row.bytes;
  }
}

TEST(FieldTemplateTest, PutGrowsToTheIndexPlusHalfTheBasesizeWithinTheIntRange) {
  int items[6] = {}, extra = 0;
  const struct { int basesize, index, size; } rows[] = {{10, 100, 105}, {16, 15, 16}, {16, 16, 24}, {1, 6, 7}};
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.basesize) + " at " + std::to_string(row.index));
    R_FieldTemplate<int> field(row.basesize);
    for (int i = 0; i < 6; ++i) ASSERT_TRUE(field.put(i, &items[i]));
    ASSERT_TRUE(field.put(row.index, &extra));
    EXPECT_EQ(row.size, field.getSize());
    EXPECT_EQ(&extra, field.get(row.index));
    for (int i = 0; i < 6; ++i) EXPECT_EQ(&items[i], field.get(i));
    EXPECT_TRUE(field.get(row.size) == nullptr && field.get(-1) == nullptr);
  }
  R_FieldTemplate<int> field(10);
  EXPECT_TRUE(field.resize(3));
  EXPECT_FALSE(field.put(INT_MAX, &extra) || field.put(INT_MAX - 4, &extra));
  EXPECT_EQ(10, field.getSize()) << "resize never shrinks";
}

// Detach hands an element back; remove and clear delete it, and so does the container for what it still holds.
TEST(SortedFieldTemplateTest, AddInsertsBeforeTheFirstElementTheItemPrecedesAndOnlyDetachHandsItBack) {
  Item::alive = 0;
  {
    Items items(4);
    const int keys[] = {3, 1, 2, -1, 4, 0, 2}, positions[] = {0, 0, 1, 3, 4, 0, 3};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(positions[i], items.add(new Item(keys[i], i))) << "key " << keys[i];
    // The unknown key preceded nothing when it came, so it went to the end.
    EXPECT_EQ("0.5 1.1 2.2 2.6 3.0 -1.3 4.4 ", contents(items));
    EXPECT_EQ(8, items.getSize());  // 4, then 4 + 4 / 2 = 6, then 8
    EXPECT_TRUE(items.get(7) == nullptr && items.get(-1) == nullptr);
    std::unique_ptr<Item> detached(items.detach(1));
    items.remove(0);
    items.remove(4);
    items.remove(-1);
    EXPECT_EQ("2.2 2.6 3.0 -1.3 ", contents(items));
    EXPECT_EQ(5, Item::alive);
    items.clear();
    EXPECT_EQ(1, Item::alive);
    items.add(new Item(9));
  }
  EXPECT_EQ(0, Item::alive);
}

TEST(SortedFieldTemplateTest, AddOrderedFindsTheSamePositionsAsAddOnManyEqualKeys) {
  std::mt19937 random(20240611);
  for (int round = 0; round < 20; ++round) {
    Items scanned(3), searched(3);
    int n = 1 + static_cast<int>(random() % 200);
    for (int serial = 0; serial < n; ++serial) {
      int key = static_cast<int>(random() % 5);
      int at = scanned.add(new Item(key, serial));
      ASSERT_EQ(at, searched.addOrdered(new Item(key, serial))) << "round " << round << " item " << serial;
    }
    ASSERT_EQ(contents(scanned), contents(searched));
  }
}
