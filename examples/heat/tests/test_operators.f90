! Checks the algebra of fields on a small grid that is not square.
program test_operators
  use kinds, only: dp
  use fields
  use grids
  use norms
  use stencils
  implicit none

  real(dp), parameter :: small = 1.0e-12_dp
  type(grid), target :: g
  type(field) :: a, b, c
  type(stencil) :: op
  integer :: failures

  failures = 0
  call make_grid(g, 6, 4, 3.0_dp, 1.0_dp)
  call make_field(a, g)
  call make_field(b, g)
  call random_number(a%v)
  call random_number(b%v)
  call clear_edges(a)
  call clear_edges(b)
  op = make_stencil(g, 0.3_dp)

  call check(abs((a .dot. b) - (b .dot. a)) < small, '.dot. is symmetric')
  call check(abs(norm(a)**2 - (a .dot. a)) < small, 'norm(a) squared is a .dot. a')
  call check(abs(norm(a, b) - norm(a - b)) < small, 'norm(a, b) is norm(a - b)')
  call check(abs((a .dot. (op .apply. b)) - (b .dot. (op .apply. a))) < small, &
             '.apply. is symmetric')
  call check((a .dot. (op .apply. a)) > (a .dot. a), 'the stencil is larger than 1')

  b = 2.0_dp
  call check(abs(largest(b) - 2.0_dp) < small, 'field = number fills the field')
  c = b
  call add_scaled(c, -1.0_dp, b)
  call check(norm(c) < small, 'c := c - b is zero for c = b')

  if (failures > 0) error stop 'operators: FAILED'
  write (*, '(a)') 'operators: all passed!'

contains

  subroutine clear_edges(u)
    type(field), intent(inout) :: u

    u%v(0, :) = 0.0_dp
    u%v(u%mesh%nx, :) = 0.0_dp
    u%v(:, 0) = 0.0_dp
    u%v(:, u%mesh%ny) = 0.0_dp
  end subroutine clear_edges

  subroutine check(ok, what)
    logical, intent(in) :: ok
    character(len=*), intent(in) :: what

    if (.not. ok) then
      failures = failures + 1
      write (*, '(2a)') 'not true: ', what
    end if
  end subroutine check

end program
