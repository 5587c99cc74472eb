// Helpers for pinning stored forms: bytes as hex text, saving a value into
// memory, loading it back, and loading every cut-off prefix of a form.
#ifndef TESTS_SUPPORT_STORED_BYTES_H
#define TESTS_SUPPORT_STORED_BYTES_H

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "core/r_bufferinputstream.h"
#include "core/r_bufferoutputstream.h"

typedef std::vector<unsigned char> Bytes;

// "03 01 F0" for the bytes 3, 1, 240.
inline std::string hexOf(const Bytes& bytes) {
  std::string text;
  char pair[4];
  for (unsigned char b : bytes) {
    snprintf(pair, sizeof pair, "%02X", b);
    if (!text.empty()) text += ' ';
    text += pair;
  }
  return text;
}

// The inverse of hexOf: pairs of hex digits; blanks between them are
// optional.
inline Bytes bytesOf(const std::string& hex) {
  Bytes bytes;
  std::string digits;
  for (char c : hex) {
    if (c != ' ') digits += c;
  }
  for (size_t i = 0; i + 1 < digits.size(); i += 2)
    bytes.push_back(static_cast<unsigned char>(strtol(digits.substr(i, 2).c_str(), nullptr, 16)));
  return bytes;
}

inline Bytes operator+(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

// What `save(stream)` writes, measured first through an empty buffer.
template <class Save>
Bytes bytesSavedBy(Save save) {
  R_BufferOutputStream measure(nullptr, 0);
  save(measure);
  Bytes bytes(static_cast<size_t>(measure.getCount()));
  R_BufferOutputStream out(bytes.data(), measure.getCount());
  save(out);
  return bytes;
}

template <class T>
Bytes savedBytes(const T& value) {
  return bytesSavedBy([&](R_OutputStream& stream) { value.save(stream); });
}

// Loads a T from exactly `bytes` (ok must stay true and nothing may be left
// over) and answers what the loaded value saves.
template <class T>
Bytes reloadAndSave(const Bytes& bytes) {
  R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  T value;
  value.load(in, &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(-1, in.readByte()) << "bytes left behind the value";
  return savedBytes(value);
}

// Loads a T from every proper prefix of `bytes` and hands the outcome to
// `check(value, ok, stream)`.
template <class T, class Check>
void forEachTruncation(const Bytes& bytes, Check check) {
  for (size_t cut = 0; cut < bytes.size(); ++cut) {
    SCOPED_TRACE("cut after " + std::to_string(cut) + " bytes");
    R_BufferInputStream stream(bytes.data(), static_cast<int>(cut));
    bool ok = true;
    T value;
    value.load(stream, &ok);
    check(value, ok, stream);
  }
}

// Loads `value` from `bytes` with `ok` starting as given and answers ok;
// `next` gets the byte after what the load read (-1 at the end).
template <class T>
bool loadFrom(const Bytes& bytes, T* value, int* next = nullptr, bool ok = true) {
  R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
  value->load(in, &ok);
  if (next) *next = in.readByte();
  return ok;
}

// Pins a stored form two of the three ways: `value` saves as `hex`, and
// `hex` loads and saves back unchanged.
template <class T>
void expectStoredForm(const T& value, const std::string& hex) {
  EXPECT_EQ(hex, hexOf(savedBytes(value)));
  EXPECT_EQ(hex, hexOf(reloadAndSave<T>(bytesOf(hex))));
}

// The third way: every proper prefix of `hex` fails the load and leaves a
// value that `empty` accepts.
template <class T, class Empty>
void expectEveryCutFails(const std::string& hex, Empty empty) {
  forEachTruncation<T>(bytesOf(hex), [&](const T& value, bool ok, R_InputStream&) {
    EXPECT_FALSE(ok);
    EXPECT_TRUE(empty(value));
  });
}

#endif
