module Tools
  interface swap
    module procedure swap_int, swap_real
  end interface
contains
  subroutine swap(a, b)
    call swap_int(a, b)
  end subroutine swap
  function norm(x)
    norm = abs(x)
  end function norm
end module Tools
