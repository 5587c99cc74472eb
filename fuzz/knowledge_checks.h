// What the knowledge targets do with a file that loaded: write it in both
// forms, read those back, and compute every variable for a made proband.
#ifndef FUZZ_KNOWLEDGE_CHECKS_H
#define FUZZ_KNOWLEDGE_CHECKS_H

class R_File;

// The binary form of a loaded file with both lists of lines must load again
// and write the same bytes once more (the XML form may leave the lines out,
// the binary form requires them); the XML form is written and read, its
// result unchecked, since a rewritten element may no longer fit the capture.
// Requires: file.isOK().
void checkKnowledgeRoundTrips(const R_File& file);
// Every variable through the proband bridge, with its method chains,
// references and nested calculations, and every text written for the
// proband as one document. Requires: file.isOK().
void computeEveryVariable(const R_File& file);

#endif
