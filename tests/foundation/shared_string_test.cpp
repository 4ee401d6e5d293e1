#include "foundation/shared_string.h"

#include <gtest/gtest.h>

#include <cstring>

namespace sorvel {
namespace {

// A field of a document, which holds a text at first.
struct Field {
  explicit Field(const char* first = "") { AssignString(&text, first); }
  Field(const Field&) = delete;
  Field& operator=(const Field&) = delete;
  ~Field() { AssignString(&text, ""); }

  char* text = EmptyString;
};

TEST(AssignString, EmptyTextIsEmpty) {
  EXPECT_EQ(EmptyString[0], '\0');
}

TEST(AssignString, GivesAnEmptyFieldItsOwnCopy) {
  Field field;
  char text[] = "abc";
  EXPECT_TRUE(AssignString(&field.text, text));
  EXPECT_NE(field.text, EmptyString);
  EXPECT_NE(field.text, text);
  text[0] = 'x';
  EXPECT_STREQ(field.text, "abc");
}

TEST(AssignString, SameOrOwnTextIsFalseAndKeepsTheBuffer) {
  Field field("abc");
  char* const buffer = field.text;
  for (const char* text : {"abc", static_cast<const char*>(buffer)}) {
    EXPECT_FALSE(AssignString(&field.text, text));
    EXPECT_EQ(field.text, buffer);
    EXPECT_STREQ(field.text, "abc");
  }
}

TEST(AssignString, EmptyTextToAnEmptyFieldIsFalse) {
  Field field;
  EXPECT_FALSE(AssignString(&field.text, ""));
  EXPECT_EQ(field.text, EmptyString);
}

TEST(AssignString, TextOfEqualLengthOverwritesTheBufferInPlace) {
  Field field("abc");
  char* const buffer = field.text;
  EXPECT_TRUE(AssignString(&field.text, "xyz"));
  EXPECT_EQ(field.text, buffer);
  EXPECT_STREQ(field.text, "xyz");
}

TEST(AssignString, EmptyTextSharesTheEmptyString) {
  Field field("abc");
  EXPECT_TRUE(AssignString(&field.text, ""));
  EXPECT_EQ(field.text, EmptyString);
  EXPECT_EQ(EmptyString[0], '\0');
}

// Texts that are longer, shorter, equal but for the case of a letter, or made of bytes above 127.
TEST(AssignString, OtherTextsReplaceTheTextByteForByte) {
  Field field("abc");
  for (const char* text : {"abC", "ab", "a much longer text than before", "z", "\x83\x5c\xfc\xff\x80"}) {
    EXPECT_TRUE(AssignString(&field.text, text));
    EXPECT_STREQ(field.text, text);
  }
  EXPECT_EQ(std::strlen(field.text), 5u);
}

}  // namespace
}  // namespace sorvel
