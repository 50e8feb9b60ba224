subroutine solve(a)   ! solve for a
  print *, "solve me", solve
  print *, 'solve me'
  print *, 'wait! solve', solve, module
  print *, "she said ""solve"" twice, module", solve
  print *, "open solve
  call solve(a)       ! call solve in this module
  ! "comment" solve
  call old(a); call late(a)
  print *, "!", module
end subroutine solve
! subroutine old
"subroutine late
