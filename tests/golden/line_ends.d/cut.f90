subroutine cut
  call run
end subroutine cut