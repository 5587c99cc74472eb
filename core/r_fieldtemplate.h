// A growable array of pointers that holds but does not own its elements. The
// user keeps its own count and deletes the elements; this frees the array
// only. Growth is by `realloc` in steps of basesize/2, so a pointer stored
// stays the same pointer. Slots below the capacity that were never put hold
// no defined value.
#ifndef CORE_R_FIELDTEMPLATE_H
#define CORE_R_FIELDTEMPLATE_H

#include <cassert>
#include <climits>
#include <cstdlib>

template <class T>
class R_FieldTemplate {
 public:
  // Requires: basesize > 0.
  explicit R_FieldTemplate(int basesize)
      : field(static_cast<T**>(malloc(sizeof(T*) * static_cast<size_t>(basesize)))),
        size(field ? basesize : 0),
        step(basesize / 2) {
    assert(basesize > 0);
  }
  ~R_FieldTemplate() { free(field); }
  R_FieldTemplate(const R_FieldTemplate&) = delete;
  R_FieldTemplate& operator=(const R_FieldTemplate&) = delete;

  // Null outside 0 to getSize()-1.
  T* get(int index) const { return (index >= 0 && index < size) ? field[index] : nullptr; }
  // Grows to index + step when needed (at least to index + 1); answers false
  // and stores nothing when growing failed or the grown size would pass the
  // int range. Requires: index >= 0.
  bool put(int index, T* item) {
    assert(index >= 0);
    int grow = step > 0 ? step : 1;
    if (index >= size && (index > INT_MAX - grow || !resize(index + grow))) return false;
    field[index] = item;
    return true;
  }
  // Does nothing for a size not above the present one. On failure the array
  // is gone and the capacity 0.
  bool resize(int new_size) {
    if (new_size <= size) return true;
    T** grown = static_cast<T**>(realloc(field, sizeof(T*) * static_cast<size_t>(new_size)));
    if (!grown) {
      free(field);
      field = nullptr;
      size = 0;
      return false;
    }
    field = grown;
    size = new_size;
    return true;
  }
  int getSize() const { return size; }

 private:
  T** field;
  int size;
  int step;
};

#endif
