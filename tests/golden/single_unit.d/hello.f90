program hello
  implicit none
  print *, 'good day'
end program hello
