module dos
  interface operator (.dos
contains
  subroutine run ! runs
    call cut &
  end subroutine run
  interface
end module dos
