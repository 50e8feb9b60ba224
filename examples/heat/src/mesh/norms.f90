! Sizes of fields and distances between them.
module norms
  use kinds, only: dp
  use fields, only: field, operator (.dot.), operator (-)
  implicit none
  private
  public :: norm, largest

  ! norm(u) is the root mean square of a field over the unit square,
  ! norm(a, b) is that of the difference of two fields.
  interface norm
    module procedure norm
    module procedure distance
  end interface norm

contains

  function norm(u) result(size_of_u)
    type(field), intent(in) :: u
    real(dp) :: size_of_u

    size_of_u = sqrt(u .dot. u)
  end function norm

  function distance(a, b) result(gap)
    type(field), intent(in) :: a, b
    real(dp) :: gap

    gap = norm(a - b)
  end function distance

  ! The largest absolute value on any node.
  function largest(u) result(peak)
    type(field), intent(in) :: u
    real(dp) :: peak

    peak = maxval(abs(u%v))
  end function largest

end module norms
