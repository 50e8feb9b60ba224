! Solves the heat equation on a sequence of grids, each twice as fine as the one before,
! and checks that the error against the exact temperature falls as it should.
!
! usage: heat_study [namelist file]
program heat_study
  use kinds, only: dp
  use exact, only: temperature
  use fields, only: field, make_field, sample, operator (-)
  use grids, only: grid, make_grid
  use norms, only: norm, largest
  use settings, only: run_settings, read_settings
  use stepper, only: integrate
  use stopwatch, only: timer, start_timer, elapsed
  implicit none

  ! What the study must reach to pass.
  real(dp), parameter :: least_order = 1.9_dp
  real(dp), parameter :: largest_gap = 1.0e-8_dp

  type(run_settings) :: setup
  character(len=256) :: path
  real(dp) :: gap, order
  logical :: passed

  call get_command_argument(1, path)
  if (path /= '') call read_settings(trim(path), setup)

  call refine(setup, order)
  call compare_solvers(setup, gap)

  passed = order > least_order .and. gap < largest_gap
  write (*, '(/, a, f9.3, a, f9.1, a)') &
    'order of accuracy', order, ' (at least', least_order, ')'
  write (*, '(a, es12.2, a, es10.1, a)') &
    'cg against sor', gap, ' (at most', largest_gap, ')'
  if (.not. passed) error stop 'heat_study: FAILED'
  write (*, '(a)') 'heat_study: passed!'

contains

  ! Prints one line per grid; order is the one observed between the two finest.
  subroutine refine(setup, order)
    type(run_settings), intent(in) :: setup
    real(dp), intent(out) :: order

    type(grid), target :: g
    type(field) :: computed, true_field
    type(timer) :: clock
    real(dp) :: error, previous
    integer :: cells, iterations, level

    write (*, '(a)') "   grid       steps  iterations   rms error   max error   order  seconds"
    order = 0.0_dp
    previous = 0.0_dp
    cells = setup%cells
    do level = 1, setup%levels
      call make_grid(g, cells, cells, 1.0_dp, 1.0_dp)
      call make_field(computed, g)
      call make_field(true_field, g)
      call sample(computed, temperature, 0.0_dp)
      call sample(true_field, temperature, setup%final_time)

      call start_timer(clock)
      call integrate(computed, temperature, cells, setup, iterations)
      error = norm(computed, true_field)

      write (*, '(i5, a, i4, i8, i12, 2es12.3)', advance='no') &
        cells, ' x', cells, cells, iterations, error, largest(computed - true_field)
      if (level == 1) then
        write (*, '(a8)', advance='no') '-'
      else
        order = log(previous / error) / log(2.0_dp)
        write (*, '(f8.3)', advance='no') order
      end if
      write (*, '(f9.3)') elapsed(clock)

      previous = error
      cells = 2 * cells
    end do
  end subroutine refine

  ! Runs both solvers on the coarsest grid; gap is the distance between their results.
  subroutine compare_solvers(setup, gap)
    type(run_settings), intent(in) :: setup
    real(dp), intent(out) :: gap

    type(grid), target :: g
    type(field) :: by_cg, by_sor
    type(run_settings) :: one
    integer :: iterations

    call make_grid(g, setup%cells, setup%cells, 1.0_dp, 1.0_dp)
    call make_field(by_cg, g)
    call sample(by_cg, temperature, 0.0_dp)
    by_sor = by_cg

    one = setup
    one%method = 'cg'
    call integrate(by_cg, temperature, setup%cells, one, iterations)
    one%method = 'sor'
    call integrate(by_sor, temperature, setup%cells, one, iterations)
    gap = norm(by_cg, by_sor)
  end subroutine compare_solvers

end program
