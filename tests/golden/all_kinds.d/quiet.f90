recursive subroutine walk(n)
integer function half(n)
abstract interface
interface assignment(=)
interface operator(.cross.)
interface operator (+)
module procedure turn
type(point) :: a
  TYPE ( Point ) :: b
typedef = 1; subroutines = 2
end type
! subroutine old
print *, "program x"
x = 1; subroutine late
call walk(half(turn)); call old(late)
end
