// The items of generated documents: which fields they have, and what stands in them.
#ifndef BENCH_ITEMS_H
#define BENCH_ITEMS_H

#include <random>
#include <string>
#include <vector>

#include "Documents.h"

namespace airsync_bench {

/// A field: a text, or fields of its own.
struct Node {
  const char* tag;
  std::string text;
  std::vector<Node> children = {};
};

/// The fields of one item, some of them by chance.
std::vector<Node> NewItem(Kind kind, std::mt19937& random);

}  // namespace airsync_bench

#endif
