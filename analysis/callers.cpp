#include "analysis/callers.h"

#include <algorithm>

static bool are_equal(const Calling& a, const Calling& b) {
  return !(a < b) && !(b < a);
}

void Callers::Records::add(const Calling& reference) {
  if (!list.empty() && list.back().file == reference.file &&
      list.back().line == reference.line)
    return;
  // Duplicates are dropped before the list grows.
  if (list.size() == list.capacity()) {
    sort();
    if (list.size() > list.capacity() / 2) list.reserve(2 * list.capacity());
  }
  is_sorted = list.empty() || (is_sorted && list.back() < reference);
  list.push_back(reference);
}

void Callers::Records::sort() {
  if (is_sorted) return;
  std::stable_sort(list.begin(), list.end());
  list.erase(std::unique(list.begin(), list.end(), are_equal), list.end());
  is_sorted = true;
}

const std::vector<Calling>& Callers::sorted() const {
  static const std::vector<Calling> none;
  if (records == nullptr) return none;
  records->sort();
  return records->list;
}

bool Callers::insert(const Calling& reference) {
  const bool was_shared = records.use_count() > 1;
  if (records == nullptr) start_anew();
  if (was_shared) records = std::make_shared<Records>(*records);
  records->add(reference);
  return was_shared;
}

void Callers::insert_in_all(const Calling& reference) {
  records->add(reference);
}

void Callers::start_anew() { records = std::make_shared<Records>(); }

void Callers::share(const Callers& other) { records = other.records; }
