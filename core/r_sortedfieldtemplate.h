// An owning array of pointers that stays sorted by T's own `<` on every
// insertion. A new element goes behind every element that it does not
// precede, so equal keys keep their order of arrival and an element that
// precedes nothing goes to the end. Elements are deleted on removal and with
// the container.
#ifndef CORE_R_SORTEDFIELDTEMPLATE_H
#define CORE_R_SORTEDFIELDTEMPLATE_H

#include <cassert>
#include <cstdlib>
#include <cstring>

template <class T>
class R_SortedFieldTemplate {
 public:
  // Requires: basesize > 0.
  explicit R_SortedFieldTemplate(int basesize)
      : field(static_cast<T**>(malloc(sizeof(T*) * static_cast<size_t>(basesize)))),
        size(field ? basesize : 0),
        count(0),
        step(basesize / 2) {
    assert(basesize > 0);
  }
  ~R_SortedFieldTemplate() {
    clear();
    free(field);
  }
  R_SortedFieldTemplate(const R_SortedFieldTemplate&) = delete;
  R_SortedFieldTemplate& operator=(const R_SortedFieldTemplate&) = delete;

  // Inserts before the first element e with *item < *e, found by a linear
  // scan: correct for any `<`, also one that is not a strict weak order.
  // Answers the index, or -1 when growing failed (the item stays the caller's).
  int add(T* item) {
    int index = 0;
    while (index < count && !(*item < *field[index])) ++index;
    return insertAt(index, item);
  }
  // The same position as add(), found by binary search. Only for a `<` that
  // is a strict weak order over the elements present, where the two searches
  // agree; an item that precedes no element is appended at once.
  int addOrdered(T* item) {
    int low = 0, high = count;
    if (count > 0 && !(*item < *field[count - 1])) low = count;
    while (low < high) {
      int mid = low + (high - low) / 2;
      if (*item < *field[mid])
        high = mid;
      else
        low = mid + 1;
    }
    return insertAt(low, item);
  }

  // Null outside 0 to getCount()-1.
  T* get(int index) const { return (index >= 0 && index < count) ? field[index] : nullptr; }
  int getCount() const { return count; }

  // Deletes the element and closes the gap; ignored outside the range.
  void remove(int index) {
    if (index < 0 || index >= count) return;
    delete detach(index);
  }
  // Closes the gap and hands the element back. Requires: index in range.
  T* detach(int index) {
    assert(field && index >= 0 && index < count);
    T* item = field[index];
    memmove(field + index, field + index + 1, sizeof(T*) * static_cast<size_t>(count - index - 1));
    --count;
    return item;
  }
  // Deletes all elements; the capacity stays.
  void clear() {
    for (int i = 0; i < count; ++i) delete field[i];
    count = 0;
  }
  int getSize() const { return size; }

 private:
  int insertAt(int index, T* item) {
    if (count >= size && !resize(size + (step > 0 ? step : 1))) return -1;
    memmove(field + index + 1, field + index, sizeof(T*) * static_cast<size_t>(count - index));
    field[index] = item;
    ++count;
    return index;
  }
  bool resize(int new_size) {
    T** grown = static_cast<T**>(realloc(field, sizeof(T*) * static_cast<size_t>(new_size)));
    if (!grown) {
      clear();
      free(field);
      field = nullptr;
      size = 0;
      return false;
    }
    field = grown;
    size = new_size;
    return true;
  }

  T** field;
  int size;
  int count;
  int step;
};

#endif
