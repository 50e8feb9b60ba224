module smoke
  type puff
    real :: height
  end type puff
contains
  subroutine drift(p)
    type(puff), intent(inout) :: p
    p%height = p%height + 1.0
  end subroutine drift
end module smoke
