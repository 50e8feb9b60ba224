program levels
  Type (grid) :: g
  type, extends(grid) :: h
  allocate (g)
  if (n > 0) then
    do while (n < 9); n = n + 1; enddo
  elseif (n == 0) then
    DO i = 1, n
      continue
    end do
  else
    call until(n) ! do nothing else
  endif
  select case (n)
    Case default; print *, "if any"
  end select
  deallocate (g)
  interface norm
    module procedure norm2
  end interface
  double = do_loop + type.x + iff
contains
  SUBROUTINE until(n)
end program levels
function f
end
