#include "foundation/shared_string.h"

#include <gtest/gtest.h>

#include <cstring>

namespace sorvel {
namespace {

TEST(AssignString, EmptyTextIsEmpty) {
  EXPECT_EQ(EmptyString[0], '\0');
}

TEST(AssignString, GivesAnEmptyFieldItsOwnCopy) {
  char* field = EmptyString;
  char text[] = "abc";
  EXPECT_TRUE(AssignString(&field, text));
  EXPECT_NE(field, EmptyString);
  EXPECT_NE(field, text);
  text[0] = 'x';
  EXPECT_STREQ(field, "abc");
  AssignString(&field, "");
}

TEST(AssignString, SameTextIsFalseAndKeepsTheBuffer) {
  char* field = EmptyString;
  AssignString(&field, "abc");
  char* buffer = field;
  EXPECT_FALSE(AssignString(&field, "abc"));
  EXPECT_EQ(field, buffer);
  EXPECT_STREQ(field, "abc");
  AssignString(&field, "");
}

TEST(AssignString, OwnTextIsFalseAndKeepsTheBuffer) {
  char* field = EmptyString;
  AssignString(&field, "abc");
  char* buffer = field;
  EXPECT_FALSE(AssignString(&field, field));
  EXPECT_EQ(field, buffer);
  AssignString(&field, "");
}

TEST(AssignString, EmptyTextToAnEmptyFieldIsFalse) {
  char* field = EmptyString;
  EXPECT_FALSE(AssignString(&field, ""));
  EXPECT_EQ(field, EmptyString);
}

TEST(AssignString, TextOfEqualLengthOverwritesTheBufferInPlace) {
  char* field = EmptyString;
  AssignString(&field, "abc");
  char* buffer = field;
  EXPECT_TRUE(AssignString(&field, "xyz"));
  EXPECT_EQ(field, buffer);
  EXPECT_STREQ(field, "xyz");
  AssignString(&field, "");
}

TEST(AssignString, LongerAndShorterTextsReplaceTheText) {
  char* field = EmptyString;
  AssignString(&field, "abc");
  EXPECT_TRUE(AssignString(&field, "a much longer text than before"));
  EXPECT_STREQ(field, "a much longer text than before");
  EXPECT_TRUE(AssignString(&field, "z"));
  EXPECT_STREQ(field, "z");
  AssignString(&field, "");
}

TEST(AssignString, EmptyTextSharesTheEmptyString) {
  char* field = EmptyString;
  AssignString(&field, "abc");
  EXPECT_TRUE(AssignString(&field, ""));
  EXPECT_EQ(field, EmptyString);
  EXPECT_EQ(EmptyString[0], '\0');
}

TEST(AssignString, ComparesByteForByte) {
  char* field = EmptyString;
  AssignString(&field, "abc");
  EXPECT_TRUE(AssignString(&field, "abC"));
  EXPECT_STREQ(field, "abC");
  EXPECT_TRUE(AssignString(&field, "ab"));
  EXPECT_STREQ(field, "ab");
  AssignString(&field, "");
}

TEST(AssignString, KeepsBytesAbove127) {
  char* field = EmptyString;
  const char text[] = "\x83\x5c\xfc\xff\x80";
  EXPECT_TRUE(AssignString(&field, text));
  EXPECT_EQ(std::strlen(field), 5u);
  EXPECT_STREQ(field, text);
  AssignString(&field, "");
}

}  // namespace
}  // namespace sorvel
