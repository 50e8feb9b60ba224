// The references to one program unit.

#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "analysis/calling.h"

/// An ordered set of references, without duplicates; of equal ones it keeps the
/// first. References arrive almost in order: they are appended, and sorted when
/// the set is read or its memory is full. Sorting compares paths, so the paths
/// of all references must still be there. Unlike those of a std::set, iterators
/// hold only until a reference is added.
class Callers {
 public:
  using value_type = Calling;
  using const_iterator = std::vector<Calling>::const_iterator;

  /// The empty set.
  Callers() = default;
  Callers(const Callers&) = delete;
  Callers& operator=(const Callers&) = delete;

  const_iterator begin() const { return sorted().begin(); }
  const_iterator end() const { return sorted().end(); }
  std::size_t size() const { return sorted().size(); }
  bool empty() const { return size() == 0; }

  /// Adds a reference to this set alone. Returns whether the set held the same
  /// records as others until now.
  bool insert(const Calling& calling);

  /// Adds a reference to this set and to all that hold the same records.
  void insert_in_all(const Calling& calling);

  /// Sorts what was added since the set was last read.
  void sort() const { sorted(); }

  /// Replaces the references by new, empty records, for others to share().
  void start_anew();

  /// Replaces the references by the records of another set. The two stay the
  /// same until a reference is added to one of them alone.
  void share(const Callers& other);

 private:
  // What several sets may hold.
  struct Records {
    void add(const Calling& calling);
    void sort();

    std::vector<Calling> list;
    bool is_sorted = true;
  };

  const std::vector<Calling>& sorted() const;

  std::shared_ptr<Records> records;  // null: none
};
