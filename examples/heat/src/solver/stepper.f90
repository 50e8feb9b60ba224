! Marches a field through time with the theta scheme:
!   (I - theta w L) u_new = (I + (1 - theta) w L) u_old,   w = diffusivity * dt,
! where L is the five-point laplacian and the edges of u_new are given.
module stepper
  use kinds, only: dp
  use exact, only: diffusivity
  use fields, only: field, free_field, set_edges
  use stencils, only: stencil, make_stencil, operator (.apply.)
  use settings, only: run_settings
  use conjugate_gradients, only: solve_cg
  use relaxation, only: solve_sor
  implicit none
  private
  public :: integrate

contains

  ! Takes u from the time 0 to setup%final_time. The function profile gives the edges;
  ! iterations returns the work of all the steps together.
  subroutine integrate(u, profile, steps, setup, iterations)
    type(field), intent(inout) :: u
    interface
      function profile(x, y, t) result(value)
        use kinds, only: dp
        implicit none
        real(dp), intent(in) :: x, y, t
        real(dp) :: value
      end function profile
    end interface
    integer, intent(in) :: steps
    type(run_settings), intent(in) :: setup
    integer, intent(out) :: iterations

    type(stencil) :: implicit_part, explicit_part
    type(field) :: b
    real(dp) :: dt, weight
    integer :: step, used

    dt = setup%final_time / real(steps, dp)
    weight = diffusivity * dt
    implicit_part = make_stencil(u%mesh, setup%theta * weight)
    explicit_part = make_stencil(u%mesh, -(1.0_dp - setup%theta) * weight)

    iterations = 0
    do step = 1, steps
      b = explicit_part .apply. u
      call set_edges(u, profile, real(step, dp) * dt)
      call solve(implicit_part, b, u, setup, used)
      iterations = iterations + used
    end do
    call free_field(b)
  end subroutine integrate

  ! One linear system with the solver that the settings name.
  subroutine solve(a, b, u, setup, iterations)
    type(stencil), intent(in) :: a
    type(field), intent(in) :: b
    type(field), intent(inout) :: u
    type(run_settings), intent(in) :: setup
    integer, intent(out) :: iterations
    logical :: converged

    select case (setup%method)
    case ('cg')
      call solve_cg(a, b, u, setup, iterations, converged)
    case ('sor')
      call solve_sor(a, b, u, setup, iterations, converged)
    case default
      error stop 'solve: there is no such method!'
    end select
    if (.not. converged) error stop 'solve: no convergence; raise max_iterations'
  end subroutine solve

end module stepper
