# A ring with ridges wound around it, of triangles whose diagonals run across the ridges.
BEGIN {
  n = 72; m = 24; pi = 3.14159265358979
  for (i = 0; i < n; i++)
    for (j = 0; j < m; j++) {
      step = (i + j) % 12
      tube = 0.32 + 0.02 * (step < 6 ? step : 12 - step)
      u = 2 * pi * i / n; v = 2 * pi * j / m
      ring = 1 + tube * cos(v)
      printf "v %.6f %.6f %.6f\n", ring * cos(u), tube * sin(v), ring * sin(u)
    }
  for (i = 0; i < n; i++)
    for (j = 0; j < m; j++) {
      a = i * m + j + 1; b = (i + 1) % n * m + j + 1
      c = (i + 1) % n * m + (j + 1) % m + 1; d = i * m + (j + 1) % m + 1
      printf "f %d %d %d\nf %d %d %d\n", a, c, b, a, d, c
    }
}
