#include "html/block_cache.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "analysis/name_index.h"
#include "driver/settings.h"
#include "html/markup.h"
#include "tests/support/capture.h"
#include "tests/support/heap_in_use.h"
#include "tests/support/settings_guard.h"

namespace {

class BlockCacheTest : public testing::Test {
 protected:
  // The cache identifies a name by the address of its first unit.
  Namesakes units_of(std::size_t i, std::size_t count) {
    if (names[i].empty())
      names[i].emplace("", reinterpret_cast<Declaration*>(i + 1));
    return {names[i].begin(), static_cast<int>(count), false};
  }

  // What the cache writes for a name whose block would be this text now.
  std::string shown(std::size_t i, std::size_t units, std::size_t items,
                    const std::string& text) {
    return written([&](std::FILE* html) {
      cache.write(units_of(i, units), items, html, [&](std::FILE* block) {
        ++rendered;
        put(block, text);
      });
    });
  }

  BlockCache cache;
  int rendered = 0;
  SettingsGuard settings;

 private:
  std::array<Declaration::Registry, 100> names;
};

TEST_F(BlockCacheTest, WritesEveryByteOfABlockAndNoneOfOtherBlocks) {
  std::string bytes;
  for (int code = 0; code < 256; ++code) bytes += static_cast<char>(code);
  const std::string texts[] = {
      std::string(300000, 'x') + "\n", "short", bytes, "",
      std::string(70000, 'y'),         "z"};
  for (int pass = 0; pass < 2; ++pass)
    for (std::size_t i = 0; i < std::size(texts); ++i)
      EXPECT_EQ(texts[i], shown(i, 2, 2, texts[i])) << "block " << i;
}

TEST_F(BlockCacheTest, RendersABlockOnceForEachNumberOfItems) {
  EXPECT_EQ("a", shown(0, 2, 1, "a"));
  EXPECT_EQ("ab", shown(0, 2, 2, "ab"));
  EXPECT_EQ("ab", shown(0, 2, 2, "another"));
  EXPECT_EQ("abc", shown(0, 3, 3, "abc"));
  EXPECT_EQ(3, rendered);
}

TEST_F(BlockCacheTest, ForgetsItsBlocksWhenTheRegistryIsEmptied) {
  shown(0, 2, 2, "one");
  shown(1, 2, 2, "two");
  Declaration::forget_all();
  EXPECT_EQ("new one", shown(0, 2, 2, "new one"));
  EXPECT_EQ("new two", shown(1, 2, 2, "new two"));
  EXPECT_EQ("new one", shown(0, 2, 2, "another"));
  EXPECT_EQ(4, rendered);
}

TEST_F(BlockCacheTest, ForgetsItsBlocksWhenThePathSeparatorChanges) {
  EXPECT_EQ("dir/a0001.html", shown(0, 2, 2, "dir/a0001.html"));
  slash = '\\';
  EXPECT_EQ("a0001.html", shown(0, 2, 2, "a0001.html"));
  EXPECT_EQ("a0001.html", shown(0, 2, 2, "another"));
  slash = '/';
  EXPECT_EQ("dir/a0001.html", shown(0, 2, 2, "dir/a0001.html"));
}

TEST_F(BlockCacheTest, KeepsNoBlockWithMoreThan64ItemsPerUnit) {
  const struct {
    std::size_t units;
    std::size_t items;
    int rendered;  // times in two calls
  } cases[] = {{1, 64, 1}, {1, 65, 2}, {3, 192, 1}, {3, 193, 2}, {3, 9999, 2}};
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    const auto& c = cases[i];
    rendered = 0;
    EXPECT_EQ("first", shown(i, c.units, c.items, "first"));
    const std::string kept = c.rendered == 1 ? "first" : "second";
    EXPECT_EQ(kept, shown(i, c.units, c.items, "second"));
    EXPECT_EQ(c.rendered, rendered) << c.units << " units, " << c.items;
  }
}

TEST_F(BlockCacheTest, ForgetsItsBlocksOnceTheyExceedAMegabyte) {
  const std::string half(1 << 19, 'x');
  shown(0, 2, 2, half);
  shown(1, 2, 2, half);
  EXPECT_EQ(half, shown(0, 2, 2, "not too much yet"));
  shown(2, 2, 2, "y");
  EXPECT_EQ("one", shown(0, 2, 2, "one"));
  EXPECT_EQ("two", shown(1, 2, 2, "two"));
  EXPECT_EQ("three", shown(2, 2, 2, "three"));
  for (const std::size_t i : {0u, 1u, 2u}) shown(i, 2, 2, "another");
  EXPECT_EQ(6, rendered);
}

TEST_F(BlockCacheTest, CountsOnlyTheLatestTextOfABlock) {
  shown(0, 2, 0, "kept");
  for (std::size_t items = 0; items < 100; ++items)
    shown(1, 2, items, std::string(20000, 'x'));
  EXPECT_EQ("kept", shown(0, 2, 0, "another"));
}

TEST_F(BlockCacheTest, FreesItsMemory) {
  const auto use_another = [this] {
    written([this](std::FILE* html) {
      BlockCache another;
      another.write(units_of(0, 2), 2, html, [](std::FILE* block) {
        put(block, std::string(1000, 'x'));
      });
    });
  };
  for (int i = 0; i < 100; ++i) use_another();
  const std::size_t before = heap_in_use();
  for (int i = 0; i < 100; ++i) use_another();
  EXPECT_GT(before + 10000, heap_in_use());
}

}  // namespace
