// The references to one program unit.

#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "analysis/calling.h"

/// An ordered set of references, without duplicates. Of equal references it
/// keeps the first. References arrive almost in order: they are appended, and
/// sorted when the set is read or its memory is full. Sorting compares paths,
/// so the paths of all references must still exist. Unlike those of a std::set,
/// iterators are valid only until a reference is added.
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

  /// Adds a reference to this set only. Returns whether the set shared its
  /// records until now.
  bool insert(const Calling& reference);

  /// Adds a reference to this set and to all sets that share its records. Call
  /// it only after start_anew() or share().
  void insert_in_all(const Calling& reference);

  /// Sorts the references now, not when the set is next read.
  void sort() const { sorted(); }

  /// Replaces the references by new, empty records that others can share().
  void start_anew();

  /// Replaces the references by the records of another set. The two sets share
  /// them until insert() adds a reference to one of the sets.
  void share(const Callers& other);

 private:
  // The references of one set, or of several sets that share them.
  struct Records {
    void add(const Calling& reference);
    void sort();

    std::vector<Calling> list;
    bool is_sorted = true;
  };

  const std::vector<Calling>& sorted() const;

  std::shared_ptr<Records> records;  // null: no references
};
