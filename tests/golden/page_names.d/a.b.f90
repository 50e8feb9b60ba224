subroutine dotted
  call plain
end
