! A field is a set of values on the nodes of a grid, with the algebra that solvers need.
module fields
  use kinds, only: dp
  use grids, only: grid, cell_area, same_shape
  implicit none
  private
  public :: field, make_field, free_field, sample, set_edges, add_scaled
  public :: operator (.dot.), operator (-), assignment (=)

  ! A field does not own its grid: the grid must outlive every field made on it.
  type :: field
    type(grid), pointer :: mesh => null()
    real(dp), allocatable :: v(:, :)
  end type field

  interface operator (.dot.)
    module procedure inner_product
  end interface operator (.dot.)

  interface operator (-)
    module procedure difference
  end interface operator (-)

  interface assignment(=)
    module procedure fill
  end interface assignment(=)

contains

  ! A new field on the grid g, zero everywhere.
  subroutine make_field(u, g)
    type(field), intent(inout) :: u
    type(grid), target, intent(in) :: g

    call free_field(u)
    u%mesh => g
    allocate (u%v(0:g%nx, 0:g%ny), source=0.0_dp)
  end subroutine make_field

  subroutine free_field(u)
    type(field), intent(inout) :: u

    if (allocated(u%v)) deallocate (u%v)
    nullify (u%mesh)
  end subroutine free_field

  ! Sets every node of the field u to the value of profile at the time t.
  subroutine sample(u, profile, t)
    type(field), intent(inout) :: u
    interface
      function profile(x, y, t) result(value)
        use kinds, only: dp
        implicit none
        real(dp), intent(in) :: x, y, t
        real(dp) :: value
      end function profile
    end interface
    real(dp), intent(in) :: t
    integer :: i, j

    do j = 0, u%mesh%ny
      do i = 0, u%mesh%nx
        u%v(i, j) = profile(u%mesh%x(i), u%mesh%y(j), t)
      end do
    end do
  end subroutine sample

  ! The same on the four edges only; the inner nodes of the field stay as they are.
  subroutine set_edges(u, profile, t)
    type(field), intent(inout) :: u
    interface
      function profile(x, y, t) result(value)
        use kinds, only: dp
        implicit none
        real(dp), intent(in) :: x, y, t
        real(dp) :: value
      end function profile
    end interface
    real(dp), intent(in) :: t
    integer :: i, j

    associate (m => u%mesh)
      do i = 0, m%nx
        u%v(i, 0) = profile(m%x(i), m%y(0), t)
        u%v(i, m%ny) = profile(m%x(i), m%y(m%ny), t)
      end do
      do j = 1, m%ny - 1
        u%v(0, j) = profile(m%x(0), m%y(j), t)
        u%v(m%nx, j) = profile(m%x(m%nx), m%y(j), t)
      end do
    end associate
  end subroutine set_edges

  ! u := u + s p, in place: the work horse of every iteration.
  subroutine add_scaled(u, s, p)
    type(field), intent(inout) :: u
    real(dp), intent(in) :: s
    type(field), intent(in) :: p

    u%v = u%v + s * p%v
  end subroutine add_scaled

  ! a .dot. b: the integral of the product over the plate.
  function inner_product(a, b) result(total)
    type(field), intent(in) :: a, b
    real(dp) :: total

    if (.not. same_shape(a%mesh, b%mesh)) error stop 'fields: .dot. of two different grids'
    total = cell_area(a%mesh) * sum(a%v * b%v)
  end function inner_product

  function difference(a, b) result(c)
    type(field), intent(in) :: a, b
    type(field) :: c

    if (.not. same_shape(a%mesh, b%mesh)) error stop 'fields: a - b on two different grids'
    call make_field(c, a%mesh)
    c%v = a%v - b%v
  end function difference

  ! field = number
  subroutine fill(u, value)
    type(field), intent(inout) :: u
    real(dp), intent(in) :: value

    u%v = value
  end subroutine fill

end module fields
