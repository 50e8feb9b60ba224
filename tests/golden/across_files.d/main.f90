program heat
  use solver
  use mesh
  implicit none
  call fill_grid(8)
  call solve(8)
contains
  subroutine report(step)
    integer :: step
    print *, step
  end subroutine report
end program heat
