// The kinds of program units.

#pragma once

/// The kind of a program unit. The keyword that opens the unit decides it. The
/// values are fixed.
enum DecType {
  DT_MODULE = 0,
  DT_PROGRAM = 1,
  DT_SUBROUTINE = 2,
  DT_FUNCTION = 3,
  DT_INTERFACE = 4,  ///< a generic interface or a user-defined operator
  DT_TYPE = 5,       ///< a derived type
};
