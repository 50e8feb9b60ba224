module solver
  use mesh
contains
  subroutine solve(n)
    integer :: n
    call fill_grid(n)
    call REPORT(n)
  end subroutine solve
end module solver
