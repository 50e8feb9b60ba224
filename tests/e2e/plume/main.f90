program plume
  use winds
  use smoke, only: puff
  implicit none
  real :: speed
  call read_speed(speed)
  print *, 'drift', drift(speed, 2.0)
end program plume
