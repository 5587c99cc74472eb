// A growable array of plain values that keeps its first N elements inside
// itself and moves to the heap only when it grows past them. For the short
// tables read over and over while loading (a proband's variable names and
// values), where asking the heap each time costs more than the work. The
// inside room is left unset until used, and so are elements that resize()
// adds. Only for values that may be copied as bytes. Not copyable.
#ifndef CORE_R_SMALLARRAY_H
#define CORE_R_SMALLARRAY_H

#include <cassert>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <vector>

template <class T, int N>
class R_SmallArray {
  static_assert(std::is_trivially_copyable<T>::value, "elements are moved as bytes");

 public:
  R_SmallArray() : count(0) {}
  R_SmallArray(const R_SmallArray&) = delete;
  R_SmallArray& operator=(const R_SmallArray&) = delete;

  int size() const { return count; }
  T* data() { return heap.empty() ? reinterpret_cast<T*>(local) : heap.data(); }
  const T* data() const { return heap.empty() ? reinterpret_cast<const T*>(local) : heap.data(); }
  T& operator[](int index) {
    assert(index >= 0 && index < count);
    return data()[index];
  }
  const T& operator[](int index) const {
    assert(index >= 0 && index < count);
    return data()[index];
  }

  // Requires: new_size >= 0.
  void resize(int new_size) {
    assert(new_size >= 0);
    if (heap.empty() && new_size <= N) {
      count = new_size;
      return;
    }
    if (heap.empty()) {
      heap.resize(static_cast<size_t>(new_size));
      memcpy(static_cast<void*>(heap.data()), local, sizeof(T) * static_cast<size_t>(count));
    } else {
      heap.resize(static_cast<size_t>(new_size));
    }
    count = new_size;
  }
  void push(const T& item) {
    resize(count + 1);
    memcpy(static_cast<void*>(data() + count - 1), &item, sizeof(T));
  }

 private:
  alignas(T) unsigned char local[sizeof(T) * N];
  std::vector<T> heap;  // holds the elements once they outgrew `local`
  int count;
};

#endif
