function Norm(x)
  Norm = x * x
end function Norm

type tools
end type tools

subroutine user(x)
  use tools
  call swap(x, norm(x)); call Swap(x, x)
end subroutine user
