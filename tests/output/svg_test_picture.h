// One small graph drawn through the output's graph operations, the same for
// every graph-extension: the picture whose SVG and BMP forms are compared
// in the browser. The positions that the comparison looks at are worked
// out by hand next to the calls that paint them.
#ifndef TESTS_OUTPUT_SVG_TEST_PICTURE_H
#define TESTS_OUTPUT_SVG_TEST_PICTURE_H

#include "output/r_outputinterface.h"

const int kPictureWidth = 240;
const int kPictureHeight = 180;

inline void paintTestPicture(R_OutputInterface& out) {
  out.beginGraph(0, "Test picture", kPictureWidth, kPictureHeight);
  out.fillArea(0, 0, kPictureWidth - 1, kPictureHeight - 1, 0, 0);
  out.fillArea(30, 10, 229, 149, 1, 0);
  out.fillArea(0, 160, 239, 179, 2, 0);  // (5, 170) analysis grey96
  // Band columns 30 to 228, A from 100 to 40, B from 130 to 70: at x = 200
  // A = 100 - 60 * 170 / 199 = 48.7 and B = 78.7, so (200, 60) is grey86.
  out.setClip(30, 10, 229, 149);
  out.drawBand(30, 100, 130, 229, 40, 70, 0);
  out.setClip(0, 0, kPictureWidth - 1, kPictureHeight - 1);
  // Frame corners (30, 10), (229, 10), (30, 149), (229, 149) in black.
  out.frameArea(30, 10, 229, 149, 1, 0);
  // Dashes 0x7777 from x = 30: dot k is left out when k % 4 == 2, so (32,
  // 80) and (36, 80) stay white (no band left of x = 96 at this height)
  // and (33, 80), (35, 80) are red.
  out.drawRasterLine(30, 80, 229, 80, 2);
  // Dashes 0xCCCC from y = 10: dot k is drawn when k % 4 is 1 or 2, so
  // (130, 11) and (130, 12) are darkgreen, (130, 13) white.
  out.drawRasterLine(130, 10, 130, 149, 3);
  // The same sloping, one up every second column: dot k at (140 + k, 140
  // - k / 2), so (142, 139) and (146, 137) are darkgreen, (144, 138) white.
  out.drawRasterLine(140, 140, 220, 100, 3);
  // 60 down over 199 columns: at x = 40 the line is 60 * 10 / 199 = 3.02
  // up, so (40, 112) is darkslateblue.
  out.drawRefLine(30, 115, 229, 55, 0);
  // Pen 2, one up every second column: dot 30 at (90, 105) covers it.
  out.drawDataLine(60, 120, 120, 90, 0);
  // Pen 1, the same slope: dot 30 is (150, 75), grey11 over the band.
  out.drawDataArrow(120, 90, 180, 60, 1);
  // Marks of radius 4 (black, centre and (64, 120) on the ring) and 2.
  out.drawMark(60, 120, 0, false);
  out.drawMark(120, 90, 0, false);
  out.drawMark(180, 60, 1, true);
  // h = 16 * 3 / 8 = 6: (212, 110) and (215, 120) are blue.
  out.drawRangeBar(215, 110, 130, 0);
  // Boxes x 110 to 149, y 152 to 161 and x 4 to 27, y 75 to 84.
  out.drawText(130, 152, 0, 2, 0, "Age 5");
  out.drawText(28, 80, 2, 1, 0, "110");
  out.endGraph(0, "Test picture");
}

#endif
