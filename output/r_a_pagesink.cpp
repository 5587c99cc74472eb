#include "output/r_a_pagesink.h"

R_A_PageSink::~R_A_PageSink() {}
