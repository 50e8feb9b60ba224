! Successive over-relaxation for  a u = b : slower than solve_cg, but much simpler,
! and so a good witness against it.
module relaxation
  use kinds, only: dp
  use fields, only: field, operator (-)
  use norms, only: norm
  use stencils, only: stencil, operator (.apply.)
  use settings, only: run_settings
  implicit none
  private
  public :: solve_sor

  ! The kernel is an external procedure, so that it can be replaced at link time.
  interface
    subroutine sweep(nx, ny, v, b, centre, west_east, south_north, omega)
      use kinds, only: dp
      implicit none
      integer, intent(in) :: nx, ny
      real(dp), intent(inout) :: v(0:nx, 0:ny)
      real(dp), intent(in) :: b(0:nx, 0:ny)
      real(dp), intent(in) :: centre, west_east, south_north, omega
    end subroutine sweep
  end interface

contains

  ! On entry u holds a first guess with the right edges, and b is zero on the edges.
  subroutine solve_sor(a, b, u, setup, iterations, converged)
    type(stencil), intent(in) :: a
    type(field), intent(in) :: b
    type(field), intent(inout) :: u
    type(run_settings), intent(in) :: setup
    integer, intent(out) :: iterations
    logical, intent(out) :: converged

    real(dp) :: goal, residual

    goal = setup%tolerance * norm(b)
    residual = norm(b, a .apply. u)
    iterations = 0
    do while (residual > goal .and. iterations < setup%max_iterations)
      iterations = iterations + 1
      call sweep(u%mesh%nx, u%mesh%ny, u%v, b%v, &
                 a%centre, a%west_east, a%south_north, setup%omega)
      residual = norm(b, a .apply. u)
      if (setup%verbose) call report(iterations, residual)
    end do
    converged = residual <= goal
  end subroutine solve_sor

  subroutine report(iteration, residual)
    integer, intent(in) :: iteration
    real(dp), intent(in) :: residual

    write (*, '(4x, a, i5, es12.4)') 'solve_sor', iteration, residual
  end subroutine report

end module relaxation
