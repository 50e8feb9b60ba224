module winds
  implicit none
contains
  subroutine read_speed(speed)
    real, intent(out) :: speed
    speed = 3.5  ! read_speed knows no better
  end subroutine read_speed

  function drift(speed, hours)
    real, intent(in) :: speed, hours
    real :: drift
    if (hours > 0.0) drift = speed * hours
  end function drift
end module winds
