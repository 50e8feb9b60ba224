module mesh
  implicit none
contains
  subroutine fill_grid(n)
    integer :: n
    if (n > 9) call Report(n)
    ! solver takes the other half
  end subroutine
end module mesh
