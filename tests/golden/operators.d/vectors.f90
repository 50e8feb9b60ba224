module vectors
  interface operator (.cross.)
    module procedure cross
  end interface operator (.cross.)
  interface operator(.plus.)
  end interface
  interface operator (+)
  end interface
  INTERFACE OPERATOR   ( .Dot. )
  end interface
  interface operator (.half)
  interface operator
contains
  function cross(a, b)
    cross = a .CROSS. b
    c = a.cross.b + (a .dot. b) .plus. (.half a)
  end function cross
end module vectors
