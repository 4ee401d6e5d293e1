#include "foundation/cursor_list.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace sorvel {
namespace {

// The way that a seek took can't be seen from outside. These open the list's nodes, so that a test can bend the link
// on the way that must not be taken.
struct HeadOfList {
  friend constexpr auto Member(HeadOfList);
};
template <typename Tag, auto kMember>
struct Opened {
  friend constexpr auto Member(Tag) { return kMember; }
};
template struct Opened<HeadOfList, &CursorList<int32_t>::head>;

// A list of 0 to count - 1.
struct Numbers : CursorList<int32_t> {
  explicit Numbers(int32_t length) {
    for (int32_t i = 0; i < length; ++i) InsertAfter(i);
  }
};

// The index of the cursor and the element there.
using Place = std::pair<int32_t, int32_t>;
Place CursorOf(const CursorList<int32_t>& list) {
  return {list.CursorIndex(), list.Current()};
}

auto NodeAt(CursorList<int32_t>& list, int32_t index) {
  auto* node = list.*Member(HeadOfList{});
  while (index-- > 0) node = node->next;
  return node;
}

// Seeks past a node whose link is bent to itself: a seek that takes the link never arrives.
void ExpectSeekAvoids(CursorList<int32_t>* list, int32_t from, int32_t to, int32_t bent, bool forward) {
  ASSERT_TRUE(list->Seek(from));
  auto* const node = NodeAt(*list, bent);
  auto*& link = forward ? node->next : node->prev;
  auto* const kept = link;
  link = node;
  EXPECT_TRUE(list->Seek(to));
  EXPECT_EQ(list->Current(), to);
  link = kept;
}

// All elements, forwards by next and backwards by prev; the two have to agree.
std::vector<int32_t> Elements(CursorList<int32_t>& list) {
  std::vector<int32_t> forward;
  std::vector<int32_t> backward;
  if (list.SeekFirst()) {
    do {
      EXPECT_EQ(list.CursorIndex(), static_cast<int32_t>(forward.size()));
      forward.push_back(list.Current());
    } while (list.SeekNext());
    EXPECT_TRUE(list.SeekLast());
    do {
      backward.insert(backward.begin(), list.Current());
    } while (list.SeekPrev());
  }
  EXPECT_EQ(forward, backward);
  EXPECT_EQ(static_cast<int32_t>(forward.size()), list.Count());
  return forward;
}

using Ints = std::vector<int32_t>;

TEST(CursorList, NewListIsEmptyWithCursorIndexZero) {
  CursorList<int32_t> list;
  EXPECT_EQ(list.Count(), 0);
  EXPECT_EQ(list.CursorIndex(), 0);
}

TEST(CursorList, EmptyListGivesTheDefaultElement) {
  CursorList<const char*> pointers;
  EXPECT_EQ(pointers.Current(), nullptr);
  EXPECT_EQ(pointers.At(0), nullptr);
  EXPECT_EQ(pointers.At(-1), nullptr);
  EXPECT_EQ(pointers.CurrentSlot(), nullptr);
  CursorList<int32_t> numbers;
  EXPECT_EQ(numbers.Current(), 0);
  EXPECT_EQ(numbers.At(0), 0);
}

TEST(CursorList, EmptyListRefusesEveryMove) {
  CursorList<int32_t> list;
  for (int32_t index : {-1, 0, 1}) EXPECT_FALSE(list.Seek(index));
  EXPECT_FALSE(list.SeekFirst());
  EXPECT_FALSE(list.SeekLast());
  EXPECT_FALSE(list.SeekNext());
  EXPECT_FALSE(list.SeekPrev());
  EXPECT_FALSE(list.RemoveCurrent());
  EXPECT_EQ(list.Find(0), -1);
  list.RemoveAll();
  EXPECT_EQ(list.Count(), 0);
}

TEST(CursorList, SeekOutsideIsFalseAndKeepsTheCursor) {
  Numbers list(4);
  ASSERT_TRUE(list.Seek(2));
  EXPECT_FALSE(list.Seek(-1));
  EXPECT_EQ(list.Current(), 2);
  EXPECT_FALSE(list.Seek(4));
  EXPECT_EQ(list.Current(), 2);
  EXPECT_FALSE(list.Seek(INT32_MIN));
  EXPECT_FALSE(list.Seek(INT32_MAX));
  EXPECT_EQ(CursorOf(list), Place(2, 2));
}

TEST(CursorList, SeekFindsEveryIndexFromEveryOther) {
  for (int32_t count = 1; count <= 10; ++count) {
    Numbers list(count);
    for (int32_t from = 0; from < count; ++from) {
      for (int32_t to = 0; to < count; ++to) {
        ASSERT_TRUE(list.Seek(from));
        ASSERT_TRUE(list.Seek(to));
        EXPECT_EQ(CursorOf(list), Place(to, to));
      }
    }
  }
}

TEST(CursorList, SeekStartsWhereItIsNearest) {
  Numbers list(10);
  // At the tail, or at the head, when that is nearer; at the cursor when head or tail is equally near.
  ExpectSeekAvoids(&list, 5, 9, 5, true);
  ExpectSeekAvoids(&list, 5, 2, 5, false);
  ExpectSeekAvoids(&list, 6, 3, 0, true);
  ExpectSeekAvoids(&list, 3, 6, 9, false);
}

TEST(CursorList, SeekOfANeighbourTakesOneStep) {
  Numbers list(10);
  ASSERT_TRUE(list.Seek(5));
  auto* before = NodeAt(list, 4);
  auto* beforeNext = before->next;
  before->next = before;
  EXPECT_TRUE(list.Seek(6));
  EXPECT_EQ(list.Current(), 6);
  EXPECT_TRUE(list.Seek(5));
  EXPECT_EQ(list.Current(), 5);
  before->next = beforeNext;
}

TEST(CursorList, MovesStopAtTheEnds) {
  Numbers list(2);
  EXPECT_TRUE(list.SeekFirst());
  EXPECT_EQ(CursorOf(list), Place(0, 0));
  EXPECT_TRUE(list.SeekNext());
  EXPECT_EQ(CursorOf(list), Place(1, 1));
  EXPECT_FALSE(list.SeekNext());
  EXPECT_EQ(CursorOf(list), Place(1, 1));
  EXPECT_TRUE(list.SeekPrev());
  EXPECT_EQ(CursorOf(list), Place(0, 0));
  EXPECT_FALSE(list.SeekPrev());
  EXPECT_EQ(CursorOf(list), Place(0, 0));
  EXPECT_TRUE(list.SeekLast());
  EXPECT_EQ(CursorOf(list), Place(1, 1));
}

TEST(CursorList, AtMovesTheCursorAndABadIndexGivesTheDefaultWithoutAMove) {
  int32_t a = 1;
  int32_t b = 2;
  CursorList<int32_t*> list;
  list.InsertAfter(&a);
  list.InsertAfter(&b);
  EXPECT_EQ(list.At(0), &a);
  EXPECT_EQ(list.Current(), &a);
  EXPECT_EQ(list.At(2), nullptr);
  EXPECT_EQ(list.At(-1), nullptr);
  EXPECT_EQ(list.Current(), &a);
  EXPECT_EQ(list.CursorIndex(), 0);
}

TEST(CursorList, FirstInsertionOfEitherKindMakesTheOnlyElement) {
  CursorList<int32_t> after;
  after.InsertAfter(7);
  EXPECT_EQ(after.CursorIndex(), 0);
  EXPECT_EQ(Elements(after), Ints({7}));
  CursorList<int32_t> before;
  before.InsertBefore(7);
  EXPECT_EQ(before.CursorIndex(), 0);
  EXPECT_EQ(Elements(before), Ints({7}));
}

// An edit of a list of 0 to count - 1 whose cursor is at an index leaves the cursor and the elements like this.
void ExpectEdit(const char* rule, int32_t count, int32_t at, void (*edit)(CursorList<int32_t>&), Place cursor,
                const Ints& elements) {
  Numbers list(count);
  ASSERT_TRUE(list.Seek(at));
  edit(list);
  EXPECT_EQ(CursorOf(list), cursor) << rule;
  EXPECT_EQ(Elements(list), elements) << rule;
}

TEST(CursorList, EditsMoveTheCursor) {
  const auto after = [](CursorList<int32_t>& list) { list.InsertAfter(9); };
  const auto before = [](CursorList<int32_t>& list) { list.InsertBefore(9); };
  const auto remove = [](CursorList<int32_t>& list) { EXPECT_TRUE(list.RemoveCurrent()); };
  ExpectEdit("InsertBeforeAtTheHeadMakesTheNewHead", 3, 0, before, {0, 9}, {9, 0, 1, 2});
  ExpectEdit("InsertAfterAtTheTailMakesTheNewTail", 3, 2, after, {3, 9}, {0, 1, 2, 9});
  ExpectEdit("InsertAfterInTheMiddleTakesTheNextIndex", 3, 1, after, {2, 9}, {0, 1, 9, 2});
  ExpectEdit("InsertBeforeInTheMiddleTakesOverTheIndex", 3, 1, before, {1, 9}, {0, 9, 1, 2});
  ExpectEdit("RemovingTheTailMovesTheCursorToTheNewTail", 3, 2, remove, {1, 1}, {0, 1});
  ExpectEdit("RemovingAMiddleElementLeavesTheCursorOnTheSuccessor", 4, 1, remove, {1, 2}, {0, 2, 3});
  ExpectEdit("RemovingTheHeadLeavesTheCursorOnTheNewHead", 3, 0, remove, {0, 1}, {1, 2});
  const auto change = [](CursorList<int32_t>& list) { *list.CurrentSlot() = 42; };
  ExpectEdit("SlotChangesTheElementInPlace", 3, 1, change, {1, 42}, {0, 42, 2});
}

TEST(CursorList, ListThatLostItsOnlyElementWorksAsANewOne) {
  for (bool after : {false, true}) {
    CursorList<int32_t> list;
    list.InsertAfter(1);
    EXPECT_TRUE(list.RemoveCurrent());
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(CursorOf(list), Place(0, 0));
    EXPECT_FALSE(list.SeekFirst());
    EXPECT_FALSE(list.SeekLast());
    if (after) {
      list.InsertAfter(2);
    } else {
      list.InsertBefore(2);
    }
    EXPECT_EQ(list.CursorIndex(), 0);
    EXPECT_EQ(Elements(list), Ints({2}));
  }
}

TEST(CursorList, RemoveAllFreesNodesFromAnyCursor) {
  for (int32_t at = 0; at < 5; ++at) {
    Numbers list(5);
    list.Seek(at);
    list.RemoveAll();
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(CursorOf(list), Place(0, 0));
    list.InsertAfter(3);
    EXPECT_EQ(Elements(list), Ints({3}));
  }
}

TEST(CursorList, LogsWhatItHandsOutForAChange) {
  constexpr int32_t count = 100;
  Numbers list(count);
  AccessLog log;
  list.LogTo(&log);
  list.At(3);
  list.At(1);
  list.SeekNext();
  list.Current();
  list.At(3);
  EXPECT_EQ(list.Peek(7), 7);
  for ([[maybe_unused]] const int32_t element : std::as_const(list)) {
  }
  EXPECT_FALSE(log.IsWhole());
  EXPECT_EQ(log.Indices(), Ints({1, 2, 3}));
  for (int32_t i = 0; i < 10 * count; ++i) list.At(i % 5);
  EXPECT_FALSE(log.IsWhole());
  for (int32_t i = 0; i < count; ++i) list.At(i);
  EXPECT_TRUE(log.IsWhole());
  log.Clear();
  EXPECT_TRUE(log.Indices().empty());
  list.CurrentSlot();
  EXPECT_TRUE(log.IsWhole());
  log.Clear();
  list.RemoveCurrent();
  EXPECT_TRUE(log.IsWhole());
  log.Clear();
  list.InsertAfter(1);
  EXPECT_TRUE(log.IsWhole());
  log.Clear();
  for ([[maybe_unused]] const int32_t element : list) {
  }
  EXPECT_TRUE(log.IsWhole());
  log.Clear();
  list.LogTo(nullptr);
  list.At(3);
  EXPECT_TRUE(log.Indices().empty());
}

TEST(CursorList, ElementsAreNotOwned) {
  int32_t element = 5;
  {
    CursorList<int32_t*> list;
    list.InsertAfter(&element);
    list.RemoveCurrent();
    list.InsertAfter(&element);
  }
  EXPECT_EQ(element, 5);
}

TEST(CursorList, FindStartsAtTheCursorInclusive) {
  Numbers list(5);
  list.Seek(2);
  EXPECT_EQ(list.Find(2), 2);
  EXPECT_EQ(list.Find(4), 4);
  EXPECT_EQ(CursorOf(list), Place(4, 4));
  // What lies ahead of the cursor isn't found, and the cursor stays.
  EXPECT_EQ(list.Find(2), -1);
  EXPECT_EQ(CursorOf(list), Place(4, 4));
  list.SeekFirst();
  EXPECT_EQ(list.Find(77), -1);
  EXPECT_EQ(CursorOf(list), Place(0, 0));
  EXPECT_EQ(list.Find(2), 2);
}

TEST(CursorList, FindGivesTheFirstOfEqualElements) {
  CursorList<int32_t> list;
  for (int32_t element : {4, 8, 4, 8}) list.InsertAfter(element);
  list.SeekFirst();
  EXPECT_EQ(list.Find(8), 1);
  list.SeekNext();
  EXPECT_EQ(list.Find(8), 3);
}

TEST(CursorList, FindComparesPointersNotWhatTheyPointAt) {
  std::string a = "same";
  std::string b = "same";
  CursorList<std::string*> list;
  list.InsertAfter(&a);
  list.InsertAfter(&b);
  list.SeekFirst();
  EXPECT_EQ(list.Find(&b), 1);
}

TEST(CursorList, FollowsAPlainSequenceThroughManyRandomEdits) {
  CursorList<int32_t> list;
  Ints model;
  uint32_t seed = 12345;
  auto random = [&seed](uint32_t below) {
    seed = seed * 1664525u + 1013904223u;
    return static_cast<int32_t>((seed >> 8) % below);
  };
  for (int32_t step = 0; step < 3000; ++step) {
    int32_t count = static_cast<int32_t>(model.size());
    int32_t at = count > 0 ? random(static_cast<uint32_t>(count)) : 0;
    EXPECT_EQ(list.Seek(at), count > 0);
    switch (count > 40 ? 2 : random(3)) {
      case 0:
        list.InsertAfter(step);
        model.insert(model.begin() + (count > 0 ? at + 1 : 0), step);
        break;
      case 1:
        list.InsertBefore(step);
        model.insert(model.begin() + at, step);
        break;
      default:
        EXPECT_EQ(list.RemoveCurrent(), count > 0);
        if (count > 0) model.erase(model.begin() + at);
        break;
    }
    ASSERT_EQ(list.Count(), static_cast<int32_t>(model.size()));
    if (step % 50 == 0) {
      ASSERT_EQ(Elements(list), model);
    }
  }
  EXPECT_EQ(Elements(list), model);
}

}  // namespace
}  // namespace sorvel
