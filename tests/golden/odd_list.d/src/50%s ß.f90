subroutine percent
  call again(1)
end
