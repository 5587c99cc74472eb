#include "xml/r_xmlinput.h"

R_XMLInput::~R_XMLInput() = default;
