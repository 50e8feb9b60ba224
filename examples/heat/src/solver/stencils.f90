! Five-point operators of the form  I - weight * laplacian  on the inner nodes of a grid.
module stencils
  use kinds, only: dp
  use grids, only: grid
  use fields, only: field, make_field
  implicit none
  private
  public :: stencil, make_stencil, operator (.apply.)

  type :: stencil
    real(dp) :: centre = 1.0_dp
    real(dp) :: west_east = 0.0_dp
    real(dp) :: south_north = 0.0_dp
  end type stencil

  ! q = a .apply. p
  interface operator (.apply.)
    module procedure apply_stencil
  end interface operator (.apply.)

contains

  function make_stencil(g, weight) result(a)
    type(grid), intent(in) :: g
    real(dp), intent(in) :: weight
    type(stencil) :: a

    a%west_east = -weight / g%dx**2
    a%south_north = -weight / g%dy**2
    a%centre = 1.0_dp - 2.0_dp * (a%west_east + a%south_north)
  end function make_stencil

  ! The result is zero on the edges, where the boundary condition rules.
  function apply_stencil(a, p) result(q)
    type(stencil), intent(in) :: a
    type(field), intent(in) :: p
    type(field) :: q
    integer :: i, j

    call make_field(q, p%mesh)
    do j = 1, p%mesh%ny - 1
      do i = 1, p%mesh%nx - 1
        q%v(i, j) = a%centre * p%v(i, j) &
                  + a%west_east * (p%v(i - 1, j) + p%v(i + 1, j)) &
                  + a%south_north * (p%v(i, j - 1) + p%v(i, j + 1))
      end do
    end do
  end function apply_stencil

end module stencils
