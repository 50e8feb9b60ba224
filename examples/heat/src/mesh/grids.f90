! Uniform rectangular grids: nx by ny cells, values live on the nodes.
module grids
  use kinds, only: dp
  implicit none
  private
  public :: grid, make_grid, free_grid, cell_area, same_shape

  ! Nodes are numbered from 0, so that 0 and nx (or ny) are the edges of the plate.
  type grid
    integer :: nx = 0
    integer :: ny = 0
    real(dp) :: dx = 0.0_dp
    real(dp) :: dy = 0.0_dp
    real(dp), allocatable :: x(:)
    real(dp), allocatable :: y(:)
  end type grid

contains

  ! A grid over a plate of the given size with its lower left corner at the origin.
  subroutine make_grid(g, nx, ny, width, height)
    type(grid), intent(inout) :: g
    integer, intent(in) :: nx, ny
    real(dp), intent(in) :: width, height
    integer :: i

    call free_grid(g)
    g%nx = nx
    g%ny = ny
    g%dx = width / real(nx, dp)
    g%dy = height / real(ny, dp)
    allocate (g%x(0:nx), g%y(0:ny))
    g%x = [(real(i, dp) * g%dx, i = 0, nx)]
    g%y = [(real(i, dp) * g%dy, i = 0, ny)]
  end subroutine make_grid

  subroutine free_grid(g)
    type(grid), intent(inout) :: g

    if (allocated(g%x)) deallocate (g%x)
    if (allocated(g%y)) deallocate (g%y)
    g%nx = 0
    g%ny = 0
  end subroutine free_grid

  ! The area that one node stands for in a sum over the grid.
  function cell_area(g) result(area)
    type(grid), intent(in) :: g
    real(dp) :: area

    area = g%dx * g%dy
  end function cell_area

  ! True when a node of one grid has a counterpart on the other.
  function same_shape(a, b) result(same)
    type(grid), intent(in) :: a, b
    logical :: same

    same = a%nx == b%nx .and. a%ny == b%ny
  end function same_shape

end module grids
