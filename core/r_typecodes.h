// The type bytes that open every block of the binary forms. Readers and
// writers of a class both take their byte from here.
#ifndef CORE_R_TYPECODES_H
#define CORE_R_TYPECODES_H

enum R_TypeCode {
  R_TypeString = 1,  // also the inner blocks of a stored equation
  R_TypeInteger = 2,
  R_TypeNumber = 3,
  R_TypeInterval = 4,
  R_TypeFileStatistics = 5,
  R_TypeEquation = 6,
  R_TypeList = 7,
  R_TypeVariable = 8,
  R_TypeFile = 9,
  R_TypeRefDataLine = 16,
  R_TypeRefData = 17,
  R_TypeXYVar = 18,
  R_TypeGranularity = 20,
  R_TypeReference = 21,
  R_TypeDate = 32,
  R_TypeProband = 33,
  R_TypeSuperText = 48,
  R_TypeTextElement = 64,
  R_TypeAuxogramLine = 65,
  R_TypeSimpleDBRecord = 80,
  R_TypeSimpleDB = 81,
  R_TypeBinaryObject = 153,
  R_TypeBinaryObjectList = 154,
};

#endif
