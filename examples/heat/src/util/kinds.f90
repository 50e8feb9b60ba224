! The real and integer kinds of the whole program, and one constant.
module kinds
  implicit none
  private

  ! At least 15 decimal digits: double precision on every machine we know.
  integer, parameter, public :: dp = selected_real_kind(15, 300)

  ! Wide enough to count clock ticks.
  integer, parameter, public :: long = selected_int_kind(18)

  real(dp), parameter, public :: pi = 3.14159265358979323846_dp
end module kinds
