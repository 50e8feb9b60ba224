// The kinds of program units.

#ifndef ZELKOR_ANALYSIS_DEC_TYPE_H
#define ZELKOR_ANALYSIS_DEC_TYPE_H

/// The kind of a program unit, told by the keyword that opens it. The values
/// are fixed.
enum DecType {
  DT_MODULE = 0,
  DT_PROGRAM = 1,
  DT_SUBROUTINE = 2,
  DT_FUNCTION = 3,
  DT_INTERFACE = 4,  ///< a generic interface or a user-defined operator
  DT_TYPE = 5,       ///< a derived type
};

#endif
