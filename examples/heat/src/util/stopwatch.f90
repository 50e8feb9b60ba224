! Wall-clock timing of the levels of a study.
module stopwatch
  use kinds, only: dp, long
  implicit none
  private
  public :: start_timer, elapsed

  type, public :: timer
    private
    integer(long) :: started = 0
    integer(long) :: rate = 1
  end type timer

contains

  subroutine start_timer(clock)
    type(timer), intent(out) :: clock

    call system_clock(clock%started, clock%rate)
  end subroutine start_timer

  ! Seconds since start_timer was called for this timer.
  function elapsed(clock) result(seconds)
    type(timer), intent(in) :: clock
    real(dp) :: seconds
    integer(long) :: now

    call system_clock(now)
    seconds = real(now - clock%started, dp) / real(clock%rate, dp)
  end function elapsed

end module stopwatch
