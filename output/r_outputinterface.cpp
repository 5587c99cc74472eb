#include "output/r_outputinterface.h"

R_OutputInterface::~R_OutputInterface() {}
