subroutine leading
  call early
end
