! A solution of the heat equation that can be written down: a decaying sine mode on top
! of a steady saddle. The saddle keeps the edges from being zero, the mode does the rest.
module exact
  use kinds, only: dp, pi
  implicit none
  private
  public :: temperature, decay

  real(dp), parameter, public :: diffusivity = 1.0_dp

contains

  function temperature(x, y, t) result(u)
    real(dp), intent(in) :: x, y, t
    real(dp) :: u

    u = x * y + decay(t) * sin(pi * x) * sin(pi * y)
  end function temperature

  ! What is left of the mode at the time t.
  pure function decay(t) result(factor)
    real(dp), intent(in) :: t
    real(dp) :: factor

    factor = exp(-2.0_dp * pi**2 * diffusivity * t)
  end function decay

end module exact
