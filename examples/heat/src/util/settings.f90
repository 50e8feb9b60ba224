! What a run may be told: read from a namelist file, checked once, then only read.
module settings
  use kinds, only: dp
  implicit none
  private
  public :: run_settings, read_settings

  type run_settings
    integer :: cells = 16               ! cells per side on the coarsest grid
    integer :: levels = 4               ! grids in the study, each twice as fine
    integer :: max_iterations = 2000    ! per time step
    real(dp) :: final_time = 0.1_dp
    real(dp) :: theta = 0.5_dp          ! 1/2 is Crank-Nicolson, 1 is backward Euler
    real(dp) :: tolerance = 1.0e-10_dp  ! on the relative residual
    real(dp) :: omega = 1.2_dp          ! over-relaxation factor
    character(len=8) :: method = 'cg'
    logical :: verbose = .false.        ! print the residuals of every step
  end type run_settings

contains

  ! Reads the group &study of the file path; what the file leaves out keeps its default.
  subroutine read_settings(path, setup)
    character(len=*), intent(in) :: path
    type(run_settings), intent(out) :: setup

    integer :: cells, levels, max_iterations, unit, status
    real(dp) :: final_time, theta, tolerance, omega
    character(len=8) :: method
    logical :: verbose
    namelist /study/ cells, levels, max_iterations, final_time, theta, tolerance, &
                     omega, method, verbose

    cells = setup%cells
    levels = setup%levels
    max_iterations = setup%max_iterations
    final_time = setup%final_time
    theta = setup%theta
    tolerance = setup%tolerance
    omega = setup%omega
    method = setup%method
    verbose = setup%verbose

    open (newunit=unit, file=path, status='old', action='read', iostat=status)
    if (status /= 0) then
      write (*, '(3a)') "read_settings: cannot open """, path, """"
      error stop 'no settings'
    end if
    read (unit, nml=study, iostat=status)
    close (unit)
    if (status /= 0) then
      write (*, '(3a)') "read_settings: no valid group &study in """, path, """"
      error stop 'bad settings'
    end if

    setup = run_settings(cells, levels, max_iterations, final_time, theta, tolerance, &
                         omega, method, verbose)
    call check_settings(setup)
  end subroutine read_settings

  ! Stops the program on values that no solver could work with.
  subroutine check_settings(setup)
    type(run_settings), intent(in) :: setup

    if (setup%cells < 2 .or. setup%levels < 2) then
      error stop 'settings: at least 2 cells and 2 levels, please!'
    else if (setup%theta < 0.5_dp .or. setup%theta > 1.0_dp) then
      error stop 'settings: theta must lie between 1/2 and 1'
    else if (setup%omega <= 0.0_dp .or. setup%omega >= 2.0_dp) then
      error stop 'settings: omega must lie between 0 and 2'
    end if

    select case (setup%method)
    case ('cg', 'sor')
      continue
    case default
      error stop "settings: the method is 'cg' or 'sor'"
    end select
  end subroutine check_settings

end module settings
