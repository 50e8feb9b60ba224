! The method of conjugate gradients for  a u = b  with fixed values on the edges.
module conjugate_gradients
  use kinds, only: dp
  use fields, only: field, add_scaled, operator (.dot.), operator (-)
  use stencils, only: stencil, operator (.apply.)
  use settings, only: run_settings
  implicit none
  private
  public :: solve_cg

contains

  ! On entry u holds a first guess with the right edges, and b is zero on the edges.
  subroutine solve_cg(a, b, u, setup, iterations, converged)
    type(stencil), intent(in) :: a
    type(field), intent(in) :: b
    type(field), intent(inout) :: u
    type(run_settings), intent(in) :: setup
    integer, intent(out) :: iterations
    logical, intent(out) :: converged

    type(field) :: p, q, r
    real(dp) :: alpha, beta, goal, rho, rho_old

    q = a .apply. u
    r = b - q
    p = r
    rho = r .dot. r
    goal = setup%tolerance**2 * (b .dot. b)
    converged = rho <= goal
    iterations = 0

    do while (.not. converged .and. iterations < setup%max_iterations)
      iterations = iterations + 1
      q = a .apply. p
      alpha = rho / (p .dot. q)
      call add_scaled(u, alpha, p)
      call add_scaled(r, -alpha, q)

      rho_old = rho
      rho = r .dot. r
      if (setup%verbose) call report(iterations, sqrt(rho))
      converged = rho <= goal

      ! The next direction: p := r + beta p
      beta = rho / rho_old
      p%v = r%v + beta * p%v
    end do
  end subroutine solve_cg

  subroutine report(iteration, residual)
    integer, intent(in) :: iteration
    real(dp), intent(in) :: residual

    write (*, '(4x, a, i5, es12.4)') 'solve_cg ', iteration, residual
  end subroutine report

end module conjugate_gradients
