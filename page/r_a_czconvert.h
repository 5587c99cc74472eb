// Converts Czech and Slovak text between four one-byte code pages, and
// tells how well a text fits the source code page. Bytes below 128 and
// bytes that are no Czech or Slovak letter in the source pass unchanged.
// When two letters share a byte in the source page, the later one in the
// letter table wins. Unknown encoding names mean Windows-1250. Plain value,
// copyable.
#ifndef PAGE_R_A_CZCONVERT_H
#define PAGE_R_A_CZCONVERT_H

class R_String;

class R_A_CZConvert {
 public:
  enum Encoding { encWindows1250, encIso8859_2, encCp852, encKamenicky, _enc_Count };

  // Names matched without regard to ASCII case; null or unknown gives 0.
  R_A_CZConvert(const char* source_name, const char* target_name);
  // Requires: both in 0 to _enc_Count-1.
  R_A_CZConvert(int source, int target);

  // The encoding of a name, 0 for null or an unknown one.
  static int findEncoding(const char* name);

  unsigned char convert(unsigned char byte) const { return translation[byte]; }
  // In place.
  void convert(R_String& text) const;
  // In place, up to the terminator. Null is left alone.
  void convert(char* text) const;

  // Counts the bytes of `text` (null counts as empty), the source page's
  // letters among them and the bytes that are letters only in another
  // page; `reset` starts the counts afresh. Of use only when source and
  // target differ: otherwise no byte counts as a letter.
  void analyse(const char* text, bool reset);
  // (letters of the source - 4 * letters of other pages) / bytes seen; -1.0
  // when no byte was seen.
  double getScore() const;

 private:
  void build(int source, int target);

  unsigned char translation[256];
  // 1: a letter of the source page; 255: a letter only in another page.
  unsigned char letter_class[256];
  int bytes_seen;
  int source_letters;
  int other_letters;
};

#endif
