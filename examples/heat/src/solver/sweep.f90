! Relaxation kernels. They are older than the rest of the program and keep their spelling;
! Fortran does not mind.

! One red-black sweep of over-relaxation over the inner nodes.
SUBROUTINE Sweep(nx, ny, v, b, centre, west_east, south_north, omega)
  USE Kinds, ONLY: dp
  IMPLICIT NONE
  INTEGER, INTENT(IN) :: nx, ny
  REAL(dp), INTENT(INOUT) :: v(0:nx, 0:ny)
  REAL(dp), INTENT(IN) :: b(0:nx, 0:ny)
  REAL(dp), INTENT(IN) :: centre, west_east, south_north, omega

  INTEGER :: colour, first, i, j
  REAL(dp) :: relaxed

  DO colour = 0, 1
    DO j = 1, ny - 1
      IF (MOD(j + colour, 2) == 0) THEN
        first = 1
      ELSE
        first = 2
      ENDIF
      DO i = first, nx - 1, 2
        relaxed = (b(i, j) - west_east * (v(i - 1, j) + v(i + 1, j)) &
                           - south_north * (v(i, j - 1) + v(i, j + 1))) / centre
        v(i, j) = v(i, j) + omega * (relaxed - v(i, j))
      ENDDO
    ENDDO
  ENDDO
END SUBROUTINE Sweep

! One plain sweep, from v into v_new: no factor to choose, and no order of the nodes
! either. Nothing calls it at present.
SUBROUTINE Jacobi_Step(nx, ny, v, v_new, b, centre, west_east, south_north)
  USE Kinds, ONLY: dp
  IMPLICIT NONE
  INTEGER, INTENT(IN) :: nx, ny
  REAL(dp), INTENT(IN) :: v(0:nx, 0:ny), b(0:nx, 0:ny)
  REAL(dp), INTENT(INOUT) :: v_new(0:nx, 0:ny)
  REAL(dp), INTENT(IN) :: centre, west_east, south_north

  INTEGER :: i, j

  DO j = 1, ny - 1
    DO i = 1, nx - 1
      v_new(i, j) = (b(i, j) - west_east * (v(i - 1, j) + v(i + 1, j)) &
                             - south_north * (v(i, j - 1) + v(i, j + 1))) / centre
    ENDDO
  ENDDO
END SUBROUTINE
