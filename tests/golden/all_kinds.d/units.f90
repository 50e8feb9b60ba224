program main
end program main

Module Shapes  ! the only module
  interface area
    module procedure disc_area
  end interface area
  type point
    real :: x, y
  end type point
contains
  function disc_area(r)
  end function disc_area
  subroutine move(p, dx)
    type(point) :: p
  end subroutine move
end module Shapes
