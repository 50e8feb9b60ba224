subroutine trace
  type, public :: vertex
  end type vertex
  TYPE::Edge
  public :: edge, vertex
  type = 3
  type(edge) :: e
  e = 3 + vertex + 33
end subroutine
