subroutine hidden
  call dotted
end
