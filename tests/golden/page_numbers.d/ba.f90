subroutine middle
  call late
end
