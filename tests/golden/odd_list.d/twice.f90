subroutine again(n)
  if (n > 0) call again(n - 1)
end subroutine again
